// SPDX-License-Identifier: MIT
#include "batch/proof/file_rows.h"

#include <algorithm>
#include <ios>
#include <utility>

namespace {

constexpr std::size_t kBlockRows = 8;  // 64 kB: they stay in the processor's cache

}  // namespace

FileRows::FileRows(InputFile& file, std::uint64_t start, std::uint64_t end, std::size_t row_words,
                   ByteObserver observer)
    : file_(file),
      left_(std::max(start, std::min(file.size(), end)) - start),
      row_words_(row_words),
      observer_(std::move(observer)),
      block_(kBlockRows * row_words),
      position_(block_.size()) {
    file.stream().seekg(static_cast<std::streamoff>(std::min(start, file.size())));
}

std::optional<std::span<const std::uint16_t>> FileRows::Next() {
    if (position_ == block_.size()) {
        if (!ReadBlock()) {
            return std::nullopt;
        }
        position_ = 0;
    }
    const auto row = std::span(block_).subspan(position_, row_words_);
    position_ += row_words_;
    return row;
}

bool FileRows::ReadBlock() {
    const std::span bytes(reinterpret_cast<std::uint8_t*>(block_.data()),
                          block_.size() * sizeof(std::uint16_t));
    const auto there = bytes.first(static_cast<std::size_t>(std::min<std::uint64_t>(left_, bytes.size())));
    left_ -= there.size();
    file_.stream().read(reinterpret_cast<char*>(there.data()), static_cast<std::streamsize>(there.size()));
    std::ranges::fill(bytes.subspan(there.size()), std::uint8_t{0});
    if (observer_) {
        observer_(there);
    }
    return file_.stream().good();
}
