// SPDX-License-Identifier: MIT
// Compiled with AVX2. What this file includes must have no inline functions that are not static: the linker
// might take this file's for all.
#include "batch/fingerprint_avx2.h"

#define XXH_INLINE_ALL  // no library is linked
#include <xxhash.h>

void AddByAvx2(void* state, const void* bytes, std::size_t length) {
    (void)XXH3_64bits_update(static_cast<XXH3_state_t*>(state), bytes, length);
}
