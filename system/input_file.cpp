// SPDX-License-Identifier: MIT
#include "system/input_file.h"

#include <algorithm>
#include <ios>

#include "system/system_path.h"

bool InputFile::Open(const std::string& path) {
    const std::streamoff end =
        system_path::OpenPlainFile(path, stream_) ? std::streamoff(stream_.tellg()) : -1;
    if (end < 0) {
        return false;
    }
    size_ = static_cast<std::uint64_t>(end);
    return true;
}

bool InputFile::ReadStart(std::span<std::uint8_t> bytes) {
    const auto count = std::min<std::uint64_t>(size_, bytes.size());
    stream_.seekg(0);
    stream_.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(count));
    const auto read = static_cast<std::uint64_t>(stream_.gcount());
    std::ranges::fill(bytes.subspan(static_cast<std::size_t>(read)), std::uint8_t{0});
    return read == count;
}
