// SPDX-License-Identifier: MIT
#include "system/path_names.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace path_names {

namespace {

#if defined(_WIN32)
constexpr std::string_view kSystemSeparators = kSeparators;
#else
constexpr std::string_view kSystemSeparators = "/";
#endif

constexpr std::string_view kPartBegin = ".velmarcon-";
constexpr std::string_view kPartEnd = ".part";
constexpr char kBetween = '-';
constexpr std::string_view kOldEnd = ".old";
constexpr int kDecimal = 10;
constexpr int kHexadecimal = 16;

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

/// Cuts `text` at its last `kBetween` and returns what follows it.
std::string_view CutLast(std::string_view& text) {
    const auto position = text.rfind(kBetween);
    if (position == std::string_view::npos) {
        return {};
    }
    const auto last = text.substr(position + 1);
    text = text.substr(0, position);
    return last;
}

}  // namespace

bool EndsInSeparator(std::string_view path) {
    return !path.empty() && kSeparators.find(path.back()) != std::string_view::npos;
}

std::string WithSeparator(std::string folder) {
    if (!folder.empty() && !EndsInSeparator(folder)) {
        folder += '/';
    }
    return folder;
}

std::string FolderPart(const std::string& path) {
    return path.substr(0, path.find_last_of(kSeparators) + 1);
}

std::string FileNamePart(const std::string& path) {
    return path.substr(path.find_last_of(kSeparators) + 1);
}

std::string SystemFolderPart(const std::string& path) {
    return path.substr(0, path.find_last_of(kSystemSeparators) + 1);
}

std::string SystemFileNamePart(const std::string& path) {
    return path.substr(path.find_last_of(kSystemSeparators) + 1);
}

std::string Extension(const std::string& name) {
    return name.substr(name.rfind('.') + 1);
}

std::string BaseName(const std::string& name) {
    return name.substr(0, name.rfind('.'));
}

std::string WithExtension(const std::string& base, std::string_view extension) {
    return base + "." + std::string(extension);
}

std::string WithOtherExtension(const std::string& name, std::string_view extension) {
    return name.substr(0, name.rfind('.') + 1) + std::string(extension);
}

std::string HostPart(std::string host) {
    constexpr std::size_t longest = 32;
    constexpr std::string_view allowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-";
    host.resize(std::min(host.size(), longest));
    std::ranges::replace_if(
        host, [&](char letter) { return allowed.find(letter) == std::string_view::npos; }, '_');
    return host.empty() ? "host" : host;
}

std::string PartName(const Part& part, std::uint64_t random_number) {
    return std::string(kPartBegin) + part.host + kBetween + std::to_string(part.process) + kBetween +
           InHexadecimal(random_number) + std::string(kPartEnd);
}

std::optional<Part> ParsePartName(std::string_view name) {
    if (name.size() < kPartBegin.size() + kPartEnd.size() || !name.starts_with(kPartBegin) ||
        !name.ends_with(kPartEnd)) {
        return std::nullopt;
    }
    auto text = name.substr(kPartBegin.size(), name.size() - kPartBegin.size() - kPartEnd.size());
    if (const auto process = ToNumber(text, kDecimal)) {
        return Part{"", *process};  // written by an older version
    }
    const auto random = ToNumber(CutLast(text), kHexadecimal);
    const auto process = ToNumber(CutLast(text), kDecimal);
    if (!random || !process || text.empty()) {
        return std::nullopt;
    }
    return Part{std::string(text), *process};
}

std::optional<std::uint64_t> ParseLauncherPartName(std::string_view name) {
    for (const std::string_view begin : {".lensdb-", ".sensdb.ini-"}) {
        if (name.starts_with(begin) && name.ends_with(kPartEnd)) {
            name.remove_prefix(begin.size());
            name.remove_suffix(std::min(name.size(), kPartEnd.size()));
            return ToNumber(name, kDecimal);
        }
    }
    return std::nullopt;
}

std::string OldName(const std::string& path, int number) {
    return path + std::string(kOldEnd) + (number == 1 ? "" : std::to_string(number));
}

std::optional<std::string> NameOfOld(const std::string& name) {
    return name.ends_with(kOldEnd) ? std::optional(name.substr(0, name.size() - kOldEnd.size()))
                                   : std::nullopt;
}

std::string NumberedName(const std::string& path, std::uint32_t number) {
    return path + "." + std::to_string(number);
}

std::uint32_t NumberIn(const std::string& copy, const std::string& name) {
    constexpr std::size_t most_digits = 9;
    const std::string begin = name + ".";
    if (!copy.starts_with(begin) || copy.size() - begin.size() > most_digits) {
        return 0;
    }
    std::uint32_t number = 0;
    std::from_chars(copy.data() + begin.size(), copy.data() + copy.size(), number);
    return copy == NumberedName(name, number) ? number : 0;
}

}  // namespace path_names
