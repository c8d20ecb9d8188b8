// SPDX-License-Identifier: MIT
#include "batch/proof/dump_rows.h"

#include <algorithm>
#include <ios>

#include "input/raw_layout.h"

namespace {

constexpr std::size_t kBlockRows = 32;  // a quarter of a megabyte: it stays in the processor's cache
constexpr std::uint64_t kFirstRow = raw_layout::kLeadingWords * sizeof(std::uint16_t);

}  // namespace

bool DumpRows::Open(const std::string& path) {
    if (!file_.Open(path)) {
        return false;
    }
    CutAt(file_.size());
    file_.stream().seekg(static_cast<std::streamoff>(std::min(file_.size(), kFirstRow)));
    block_.resize(kBlockRows * raw_layout::kRowWords);
    position_ = block_.size();
    return true;
}

void DumpRows::CutAt(std::uint64_t size) {
    size = std::min(size, file_.size());
    left_ = size - std::min(size, kFirstRow);
}

std::optional<std::span<const std::uint16_t>> DumpRows::Next() {
    if (position_ == block_.size()) {
        if (!ReadBlock()) {
            return std::nullopt;
        }
        position_ = 0;
    }
    const auto row = std::span(block_).subspan(position_, raw_layout::kImageWidth);
    position_ += raw_layout::kRowWords;
    return row;
}

bool DumpRows::ReadBlock() {
    const std::span bytes(reinterpret_cast<std::uint8_t*>(block_.data()),
                          block_.size() * sizeof(std::uint16_t));
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(left_, bytes.size()));
    left_ -= count;
    file_.stream().read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(count));
    std::ranges::fill(bytes.subspan(count), std::uint8_t{0});
    return file_.stream().good();
}
