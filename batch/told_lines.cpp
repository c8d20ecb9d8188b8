// SPDX-License-Identifier: MIT
#include "batch/told_lines.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "batch/shown.h"

namespace told_lines {

void Say(bool quiet, const std::string& text) {
    if (!quiet) {
        std::printf("%s\n", text.c_str());
        (void)std::fflush(stdout);
    }
}

int Refuse(int status, const std::string& text) {
    (void)std::fflush(stdout);
    (void)std::fprintf(stderr, "velmarcon-batch: %s\n", text.c_str());
    return status;
}

void PrintNamed(const char* what, const std::vector<std::string>& lines, std::size_t all) {
    for (const std::string& line : lines) {
        std::printf("%s: %s\n", what, line.c_str());
    }
    if (all > lines.size()) {
        std::printf("... and %zu more\n", all - lines.size());
    }
}

std::vector<std::string> FirstShown(const std::vector<std::string>& texts) {
    constexpr std::size_t most = 10;
    std::vector<std::string> shown;
    std::transform(texts.begin(), texts.begin() + static_cast<std::ptrdiff_t>(std::min(texts.size(), most)),
                   std::back_inserter(shown), Shown);
    return shown;
}

}  // namespace told_lines
