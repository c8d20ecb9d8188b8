// SPDX-License-Identifier: MIT
#include "batch/progress.h"

#include <algorithm>
#include <cstdio>

#include "batch/shown.h"
#include "system/terminal.h"

Progress::Progress(std::size_t total, std::size_t settled, bool quiet)
    : total_(total),
      settled_(settled),
      width_(quiet ? 0 : TerminalWidth()),
      quiet_(quiet),
      begin_(std::chrono::steady_clock::now()),
      last_(begin_) {}

std::string Progress::Line(std::size_t done, std::size_t failed) const {
    std::string line =
        std::to_string(done) + " of " + std::to_string(total_) + ", " + std::to_string(failed) + " failed";
    if (done > settled_ && done < total_) {
        const double each = Elapsed() / static_cast<double>(done - settled_);
        line += ", " + Duration(each * static_cast<double>(total_ - done)) + " left";
    }
    return line;
}

void Progress::Show(std::size_t done, std::size_t failed) {
    constexpr auto between_lines = std::chrono::seconds(5);
    const auto now = std::chrono::steady_clock::now();
    const std::string line = quiet_ ? "" : Line(done, failed);
    if (width_ > 0) {
        const std::size_t room = std::max(width_, 2U) - 1;
        (void)std::fprintf(stderr, "\r%-*s", static_cast<int>(room), line.substr(0, room).c_str());
        shown_ = true;
    } else if (!quiet_ && now - last_ >= between_lines) {
        (void)std::printf("%s\n", line.c_str());
        (void)std::fflush(stdout);
        last_ = now;
    }
}

void Progress::Clear() {
    if (shown_) {
        (void)std::fprintf(stderr, "\r%-*s\r", static_cast<int>(std::max(width_, 2U) - 1), "");
        shown_ = false;
    }
}

double Progress::Elapsed() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin_).count();
}
