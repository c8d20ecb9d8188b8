// SPDX-License-Identifier: MIT
#include "calibrate/progress.h"

#include <cstdio>

#include "system/standard_streams.h"

namespace progress {

void Show(const std::string& text) {
    if (ErrorsGoToTerminal()) {
        (void)std::fprintf(stderr, "\r%-78s", text.c_str());
    }
}

void Clear() {
    if (ErrorsGoToTerminal()) {
        (void)std::fprintf(stderr, "\r%-78s\r", "");
    }
}

}  // namespace progress
