// SPDX-License-Identifier: MIT
#include "batch/read_back.h"

#include <algorithm>

#include "system/input_file.h"

bool ReadBack::Load(const std::string& path) {
    constexpr std::uint64_t longest = 100'000'000;  // several times that of any DNG of this camera
    InputFile file;
    length_ = 0;
    if (!file.Open(path) || file.size() > longest) {
        return false;
    }
    const auto length = static_cast<std::size_t>(file.size());
    bytes_.resize(std::max(bytes_.size(), length));
    if (!file.ReadStart(std::span(bytes_).first(length))) {
        return false;
    }
    length_ = length;
    return true;
}
