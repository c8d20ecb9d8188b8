// SPDX-License-Identifier: MIT
#include "system/part_files.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string_view>
#include <system_error>

#include "system/file_system.h"
#include "system/input_file.h"
#include "system/running_process.h"
#include "system/system_path.h"

namespace part_files {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kBegin = ".velmarcon-";
constexpr std::string_view kEnd = ".part";
constexpr char kBetween = '-';
constexpr int kHexadecimal = 16;

/// The computer's name as far as it can stand in a file's name.
std::string HostPart() {
    constexpr std::size_t longest = 32;
    constexpr std::string_view allowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-";
    std::string host = running_process::HostName().substr(0, longest);
    std::ranges::replace_if(
        host, [&](char letter) { return allowed.find(letter) == std::string_view::npos; }, '_');
    return host.empty() ? "host" : host;
}

std::optional<std::uint64_t> ToNumber(std::string_view text, int base) {
    std::uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number, base);
    return error == std::errc() && rest == end ? std::optional(number) : std::nullopt;
}

std::string InHexadecimal(std::uint64_t number) {
    constexpr std::size_t digits = 2 * sizeof(number);
    std::string text(digits, '0');
    for (std::size_t i = digits; i > 0; --i, number /= kHexadecimal) {
        text[i - 1] = "0123456789abcdef"[number % kHexadecimal];
    }
    return text;
}

/// Cuts what follows the last `kBetween` off `text`, and returns it.
std::string_view CutLast(std::string_view& text) {
    const auto position = text.rfind(kBetween);
    if (position == std::string_view::npos) {
        return {};
    }
    const auto last = text.substr(position + 1);
    text = text.substr(0, position);
    return last;
}

/// Whether no run of this computer can be writing a part of that process: this one has not begun to.
bool HasEnded(std::uint64_t process) {
    return process == running_process::Number() || running_process::IsGone(process);
}

/// Seconds for which nobody may have written to the part `name` for it to be stale; nothing when it is no
/// part's name.
std::optional<std::int64_t> AgeWhenStale(std::string_view name, const std::string& host) {
    constexpr std::int64_t day = 86400;  // s
    if (name.size() < kBegin.size() + kEnd.size() || !name.starts_with(kBegin) || !name.ends_with(kEnd)) {
        return std::nullopt;
    }
    auto text = name.substr(kBegin.size(), name.size() - kBegin.size() - kEnd.size());
    if (ToNumber(text, 10)) {
        return day;  // an older version wrote it
    }
    const auto random = ToNumber(CutLast(text), kHexadecimal);
    const auto process = ToNumber(CutLast(text), 10);
    if (!random || !process || text.empty()) {
        return std::nullopt;
    }
    return text == host && HasEnded(*process) ? 0 : day;
}

bool HaveSameBytes(const fs::path& a, const fs::path& b) {
    using Bytes = std::istreambuf_iterator<char>;
    InputFile file_a;
    InputFile file_b;
    if (!file_a.Open(system_path::FromSystem(a)) || !file_b.Open(system_path::FromSystem(b))) {
        return false;
    }
    file_a.stream().seekg(0);
    file_b.stream().seekg(0);
    return std::equal(Bytes(file_a.stream()), Bytes(), Bytes(file_b.stream()), Bytes());
}

/// Where a rename was cut short, a part and a file with a name of its own may be one, and removing the part
/// would take the other's bytes away. Both then have the same length, time and bytes.
bool MayBeNamedFile(const fs::path& part, const std::string& host) {
    std::error_code error;
    const auto size = fs::file_size(part, error);
    const auto time = fs::last_write_time(part, error);
    fs::directory_iterator entry(part.parent_path(), error);
    while (!error && entry != fs::directory_iterator()) {
        const bool is_part =
            AgeWhenStale(system_path::FromSystem(entry->path().filename()), host).has_value();
        std::error_code other;
        if (!is_part && size > 0 && entry->file_size(other) == size &&
            entry->last_write_time(other) == time && HaveSameBytes(part, entry->path())) {
            return true;
        }
        entry.increment(error);
    }
    return false;
}

}  // namespace

std::string NewName() {
    return std::string(kBegin) + HostPart() + kBetween + std::to_string(running_process::Number()) +
           kBetween + InHexadecimal(running_process::RandomNumber()) + std::string(kEnd);
}

void RemoveStale(const std::string& folder) {
    const std::string host = HostPart();
    std::error_code error;
    fs::directory_iterator entry(system_path::ToSystem(folder.empty() ? "." : folder), error);
    while (!error && entry != fs::directory_iterator()) {
        const std::string name = system_path::FromSystem(entry->path().filename());
        const auto age = AgeWhenStale(name, host);
        if (age && !(file_system::LosesReplacedFiles(folder + name) && MayBeNamedFile(entry->path(), host))) {
            file_system::RemoveAbandoned(folder + name, *age);
        }
        entry.increment(error);
    }
}

}  // namespace part_files
