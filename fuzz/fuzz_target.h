// SPDX-License-Identifier: MIT
#ifndef VELMARCON_FUZZ_FUZZ_TARGET_H
#define VELMARCON_FUZZ_FUZZ_TARGET_H

#include <cstddef>
#include <cstdint>
#include <span>

/// What every *_fuzzer.cpp defines: gives the bytes to its subject and requires what must hold whatever they
/// are. Called any number of times; the first call may make what the others use.
void FuzzInput(std::span<const std::uint8_t> bytes);

/// What libFuzzer and replay.cpp call: FuzzInput without its output. The time of the slowest input is printed
/// at the end. Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

#endif  // VELMARCON_FUZZ_FUZZ_TARGET_H
