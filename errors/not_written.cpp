// SPDX-License-Identifier: MIT
#include "errors/not_written.h"

#include <cstdio>

void PrintNotWritten(const std::string& path, const char* output_name, const char* reason) {
    std::printf("%s: %s not written: %s\n", path.c_str(), output_name, reason);
}
