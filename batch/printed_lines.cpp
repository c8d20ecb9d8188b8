// SPDX-License-Identifier: MIT
#include "batch/printed_lines.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include "batch/shown.h"
#include "system/file_system.h"

namespace {

constexpr std::string_view kError = "Error #";
constexpr std::string_view kNotWritten = "DNG not written: ";

/// What does not keep a picture from its DNG: no lens, no sensor database, no dark levels.
constexpr std::array<std::string_view, 3> kRemarks = {"Error #0013: ", "Error #0014: ", "Error #0018: "};
constexpr std::array<std::string_view, 2> kRemarkBeginnings = {"No pixel error ", "No dark field "};

/// What the system says when there is no room.
#if defined(EDQUOT)
constexpr std::array kFull = {ENOSPC, EDQUOT};
#else
constexpr std::array kFull = {ENOSPC};
#endif

bool Has(std::string_view line, std::string_view text) {
    return line.find(text) != std::string_view::npos;
}

bool IsRemark(std::string_view line) {
    return std::ranges::any_of(kRemarks, [&](std::string_view text) { return Has(line, text); }) ||
           std::ranges::any_of(kRemarkBeginnings,
                               [&](std::string_view text) { return line.starts_with(text); });
}

bool IsReason(std::string_view line) {
    return Has(line, kError) || Has(line, ": " + std::string(kNotWritten)) ||
           line == "velmarcon: out of memory";
}

}  // namespace

PrintedLines ReadPrinted(std::string_view printed) {
    PrintedLines lines;
    std::string_view last;
    while (!printed.empty()) {
        const std::size_t end = std::min(printed.find('\n'), printed.size());
        const std::string_view line = printed.substr(0, end);
        printed.remove_prefix(std::min(end + 1, printed.size()));
        if (IsRemark(line)) {
            lines.remarks += (lines.remarks.empty() ? "" : "; ") + std::string(line);
        } else if (lines.reason.empty() && IsReason(line)) {
            lines.reason = line;
        }
        if (!line.empty() && !line.starts_with("Image: ")) {
            last = line;
        }
    }
    if (lines.reason.empty()) {
        lines.reason = last;
    }
    return lines;
}

std::string KindOf(const std::string& reason) {
    for (const std::string_view text : {kError, kNotWritten}) {
        if (const auto at = reason.find(text); at != std::string::npos) {
            return reason.substr(at);
        }
    }
    return reason;
}

bool SaysDiskIsFull(const std::string& reason) {
    return std::ranges::any_of(kFull, [&](int error) {
        return reason.ends_with(std::string(kNotWritten) + ErrorText({error, std::generic_category()}));
    });
}
