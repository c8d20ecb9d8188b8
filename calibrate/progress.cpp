// SPDX-License-Identifier: MIT
#include "calibrate/progress.h"

#include <unistd.h>

#include <cstdio>

namespace progress {

namespace {

bool IsShown() {
    return ::isatty(STDERR_FILENO) != 0;
}

}  // namespace

void Show(const std::string& text) {
    if (IsShown()) {
        (void)std::fprintf(stderr, "\r%-78s", text.c_str());
    }
}

void Clear() {
    if (IsShown()) {
        (void)std::fprintf(stderr, "\r%-78s\r", "");
    }
}

}  // namespace progress
