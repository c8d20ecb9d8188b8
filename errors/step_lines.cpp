// SPDX-License-Identifier: MIT
#include "errors/step_lines.h"

#include <cstdio>

namespace step_lines {

void Begin(bool verbose, const char* step) {
    if (verbose) {
        std::printf("%s...", step);
    }
}

void Begin(bool verbose, const char* step, const char* name) {
    if (verbose) {
        std::printf("%s %s...", step, name);
    }
}

void End(bool verbose, const char* result) {
    if (verbose) {
        std::printf("%s\n", result);
    }
}

}  // namespace step_lines
