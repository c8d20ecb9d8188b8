// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_FINGERPRINT_AVX2_H
#define VELMARCON_BATCH_FINGERPRINT_AVX2_H

#include <cstddef>

/// XXH3_64bits_update by AVX2, compiled for processors that have it: no other may come to it. `state` is an
/// XXH3_state_t, which is the same for all processors.
void AddByAvx2(void* state, const void* bytes, std::size_t length);

#endif  // VELMARCON_BATCH_FINGERPRINT_AVX2_H
