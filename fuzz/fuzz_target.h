// SPDX-License-Identifier: MIT
#ifndef VELMARCON_FUZZ_FUZZ_TARGET_H
#define VELMARCON_FUZZ_FUZZ_TARGET_H

#include <cstddef>
#include <cstdint>
#include <span>

/// Defined by every *_fuzzer.cpp: gives `bytes` to the code under test and requires what must hold for any
/// input. It is called any number of times; the first call may set up what later calls use.
void FuzzInput(std::span<const std::uint8_t> bytes);

/// Called by libFuzzer and by replay.cpp: FuzzInput without its output. The time of the slowest input is
/// printed at the end. Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

#endif  // VELMARCON_FUZZ_FUZZ_TARGET_H
