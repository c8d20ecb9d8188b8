// SPDX-License-Identifier: MIT
#include "system/input_file.h"

#include <algorithm>
#include <cerrno>
#include <ios>
#include <vector>

#include "system/system_error.h"
#include "system/system_path.h"

bool InputFile::Open(const std::string& path) {
    error_ = system_path::OpenPlainFile(path, stream_);
    const std::streamoff end = error_ ? -1 : std::streamoff(stream_.tellg());
    if (end < 0) {
        error_ = error_ ? error_ : system_error::Last();
        return false;
    }
    size_ = static_cast<std::uint64_t>(end);
    return true;
}

bool InputFile::ReadAt(std::uint64_t offset, std::span<std::uint8_t> bytes) {
    const std::uint64_t start = std::min(offset, size_);
    const auto count = std::min<std::uint64_t>(size_ - start, bytes.size());
    stream_.seekg(static_cast<std::streamoff>(start));
    stream_.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(count));
    const auto read = static_cast<std::uint64_t>(stream_.gcount());
    std::ranges::fill(bytes.subspan(static_cast<std::size_t>(read)), std::uint8_t{0});
    return read == count;
}

bool InputFile::ReadPieces(const std::function<bool(std::span<const char>)>& take) {
    constexpr std::size_t piece = std::size_t{1} << 20U;
    std::vector<char> buffer(piece);
    stream_.seekg(0);
    for (std::uint64_t left = size_; left > 0;) {
        const auto length = static_cast<std::size_t>(std::min<std::uint64_t>(left, buffer.size()));
        errno = 0;
        if (!stream_.read(buffer.data(), static_cast<std::streamsize>(length))) {
            error_ = system_error::Last();
            return false;
        }
        if (!take(std::span(buffer).first(length))) {
            return false;
        }
        left -= length;
    }
    return true;
}
