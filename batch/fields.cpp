// SPDX-License-Identifier: MIT
#include "batch/fields.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <fstream>
#include <utility>

#include "system/system_path.h"

namespace fields {

std::string Joined(std::span<const std::string> texts) {
    std::string joined;
    for (const std::string& text : texts) {
        joined += text;
        joined += '\0';
    }
    return joined;
}

std::vector<std::string> Split(std::string_view joined) {
    std::vector<std::string> texts;
    for (std::size_t begin = 0; begin < joined.size();) {
        const std::size_t end = joined.find('\0', begin);
        if (end == std::string_view::npos) {
            break;
        }
        texts.emplace_back(joined.substr(begin, end - begin));
        begin = end + 1;
    }
    return texts;
}

std::optional<std::string> ReadWhole(const std::string& path) {
    std::ifstream file;
    if (system_path::OpenPlainFile(path, file)) {
        return std::nullopt;
    }
    if (!file.seekg(0)) {
        return std::nullopt;
    }
    std::string bytes;
    std::array<char, 16384> piece = {};
    // The stream's own operations, unlike its buffer's, do not throw when the disk fails.
    while (file.read(piece.data(), static_cast<std::streamsize>(piece.size())) || file.gcount() > 0) {
        bytes.append(piece.data(), static_cast<std::size_t>(file.gcount()));
    }
    return file.bad() ? std::nullopt : std::optional(std::move(bytes));
}

std::error_code WritePlain(const std::string& path, std::string_view bytes) {
    errno = 0;
    std::ofstream file(system_path::ToSystem(path), std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (file) {
        return {};
    }
    return {errno != 0 ? errno : EIO, std::generic_category()};
}

std::optional<std::uint64_t> Number(std::string_view text) {
    std::uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    const bool is_number = !text.empty() && result.ec == std::errc() && result.ptr == end;
    return is_number ? std::optional(number) : std::nullopt;
}

}  // namespace fields
