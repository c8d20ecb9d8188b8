// SPDX-License-Identifier: MIT
#ifndef VELMARCON_FUZZ_FUZZ_TARGET_H
#define VELMARCON_FUZZ_FUZZ_TARGET_H

#include <cstddef>
#include <cstdint>

/// What every *_fuzzer.cpp defines: gives the `size` bytes at `data` to its subject and requires what must
/// hold whatever they are. Called by libFuzzer or by replay.cpp, any number of times. Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

#endif  // VELMARCON_FUZZ_FUZZ_TARGET_H
