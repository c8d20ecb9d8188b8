// SPDX-License-Identifier: MIT
#include "batch/tally.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "batch/shown.h"
#include "system/file_system.h"
#include "system/system_path.h"

namespace {

/// Of each sort; the others stand in the report.
constexpr std::size_t kNamedFailures = 20;
constexpr std::size_t kNamedRemarks = 10;

void AddNamed(std::vector<std::string>& lines, const std::string& line, std::size_t most) {
    if (lines.size() < most) {
        lines.push_back(line);
    }
}

/// Bytes of the UTF-8 sequence that begins with `text`; 0 when there is none.
std::size_t SequenceLength(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    const std::size_t length = first < 0x80   ? 1
                               : first < 0xC2 ? 0
                               : first < 0xE0 ? 2
                               : first < 0xF0 ? 3
                               : first < 0xF5 ? 4
                                              : 0;
    if (length == 0 || text.size() < length) {
        return 0;
    }
    const auto is_continued = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
    if (!std::ranges::all_of(text.substr(1, length - 1), is_continued)) {
        return 0;
    }
    const auto second = length > 1 ? static_cast<unsigned char>(text[1]) : 0U;
    const bool is_overlong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
    const bool is_no_character = (first == 0xED && second >= 0xA0) || (first == 0xF4 && second >= 0x90);
    return is_overlong || is_no_character ? 0 : length;
}

std::string Escape(unsigned int unit) {
    std::array<char, 8> text = {};
    (void)std::snprintf(text.data(), text.size(), "\\u%04x", unit & 0xFFFFU);
    return text.data();
}

std::ofstream OpenAt(const std::string& path) {
    return std::ofstream(system_path::ToSystem(path), std::ios::binary | std::ios::trunc);
}

}  // namespace

std::string JsonString(const std::string& text) {
    constexpr unsigned int first_of_bytes = 0xDC00;
    constexpr unsigned char first_printable = 0x20;
    std::string quoted = "\"";
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = SequenceLength(std::string_view(text).substr(at));
        const auto byte = static_cast<unsigned char>(text[at]);
        if (length == 0) {
            quoted += Escape(first_of_bytes + byte);
        } else if (byte == '"' || byte == '\\') {
            quoted += std::string("\\") + text[at];
        } else if (byte < first_printable) {
            quoted += Escape(byte);
        } else {
            quoted += text.substr(at, length);
        }
        at += std::max<std::size_t>(length, 1);
    }
    return quoted + "\"";
}

std::string Tally::Open(const std::string& report, const std::string& json, const std::string& options,
                        bool accept_damaged) {
    options_ = options;
    accept_damaged_ = accept_damaged;
    file_system::Remove(report);
    report_ = OpenAt(report);
    if (!report_) {
        return "the report cannot be written: " + Shown(report);
    }
    if (!json.empty()) {
        json_ = OpenAt(json);
        if (!json_) {
            return "no JSON can be written to " + Shown(json);
        }
    }
    return "";
}

void Tally::Take(const Record& record, const std::string& input) {
    std::string text = record.text;
    const bool is_flawed = !record.flaws.empty() && record.verdict != Verdict::kFailed;
    if (is_flawed) {
        text += (text.empty() ? "" : "; ") + record.flaws;
    }
    const std::string line = Shown(input) + (text.empty() ? "" : ": " + Shown(text));
    report_ << VerdictWord(record.verdict) << ": " << line << "\n" << std::flush;
    if (json_.is_open()) {
        WriteJson(record, input);
    }
    if (record.verdict == Verdict::kFailed) {
        ++failed_;
        ++kinds_[Shown(record.kind)];
        AddNamed(failures_, line, kNamedFailures);
        return;
    }
    ++(record.verdict == Verdict::kConverted ? converted_ : kept_);
    if (is_flawed && !accept_damaged_) {
        ++flawed_;
        AddNamed(flaws_, line, kNamedFailures);
    } else if (!record.text.empty() || (is_flawed && record.verdict == Verdict::kConverted)) {
        ++remarked_;
        AddNamed(remarks_, line, kNamedRemarks);
    }
}

void Tally::WriteJson(const Record& record, const std::string& input) {
    std::array<char, 32> seconds = {};
    (void)std::snprintf(seconds.data(), seconds.size(), "%.3f",
                        static_cast<double>(record.milliseconds) / 1000);
    json_ << "{\"picture\": " << JsonString(input) << ", \"dng\": " << JsonString(record.dng)
          << ", \"verdict\": " << JsonString(std::string(VerdictWord(record.verdict)))
          << ", \"reason\": " << JsonString(record.text) << ", \"damage\": " << JsonString(record.flaws)
          << ", \"options\": " << JsonString(options_) << ", \"seconds\": " << seconds.data()
          << ", \"sha256\": " << (record.sha256.empty() ? "null" : JsonString(record.sha256)) << "}\n"
          << std::flush;
}

bool Tally::Close() {
    report_.close();
    if (json_.is_open()) {
        json_.close();
    }
    return report_ && json_;
}
