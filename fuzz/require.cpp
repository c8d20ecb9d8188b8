// SPDX-License-Identifier: MIT
#include "fuzz/require.h"

#include <cstdio>
#include <cstdlib>

void Require(bool holds, const char* property) {
    if (!holds) {
        (void)std::fprintf(stderr, "Does not hold: %s\n", property);
        std::abort();
    }
}
