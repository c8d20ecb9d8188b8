// SPDX-License-Identifier: MIT
#include "tests/powercut/verdict.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <span>
#include <system_error>

namespace powercut {

namespace fs = std::filesystem;

bool Read(const std::string& path, Bytes& bytes) {
    std::error_code error;
    const auto size = fs::file_size(path, error);
    std::ifstream file(path, std::ios::binary);
    constexpr std::uintmax_t most = 1ULL << 28U;  // a damaged file system may report any size
    if (error || !file || size > most) {
        return false;
    }
    bytes.resize(size);
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return static_cast<std::uintmax_t>(file.gcount()) == size;
}

State StateOf(const std::string& path, const Bytes* old, const Bytes& made) {
    std::error_code error;
    if (fs::symlink_status(path, error).type() == fs::file_type::not_found) {
        return State::kAbsent;
    }
    Bytes bytes;
    if (!Read(path, bytes)) {
        return State::kDamaged;
    }
    if (bytes == made) {
        return State::kNew;
    }
    if (old != nullptr && bytes == *old) {
        return State::kOld;
    }
    if (bytes.empty()) {
        return State::kEmpty;
    }
    return bytes.size() < made.size() && std::ranges::equal(bytes, std::span(made).first(bytes.size()))
               ? State::kShort
               : State::kDamaged;
}

std::string Name(State state) {
    switch (state) {
        case State::kOld:
            return "old";
        case State::kNew:
            return "new";
        case State::kAbsent:
            return "absent";
        case State::kEmpty:
            return "empty";
        case State::kShort:
            return "short";
        case State::kDamaged:
            break;
    }
    return "other bytes";
}

}  // namespace powercut
