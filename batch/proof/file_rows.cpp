// SPDX-License-Identifier: MIT
#include "batch/proof/file_rows.h"

#include <algorithm>

FileRows::FileRows(SequentialFile& file, std::uint64_t length, std::size_t row_words)
    : file_(file), left_(length), row_(row_words) {}

std::optional<std::span<const std::uint16_t>> FileRows::Next() {
    const std::span row_bytes(reinterpret_cast<std::uint8_t*>(row_.data()),
                              row_.size() * sizeof(std::uint16_t));
    const auto bytes = file_.Next(static_cast<std::size_t>(std::min<std::uint64_t>(left_, row_bytes.size())));
    if (!bytes) {
        return std::nullopt;
    }
    left_ -= bytes->size();
    if (bytes->size() == row_bytes.size()) {
        return std::span(reinterpret_cast<const std::uint16_t*>(bytes->data()), row_.size());
    }
    std::ranges::fill(row_, std::uint16_t{0});
    std::ranges::copy(*bytes, row_bytes.begin());
    return row_;
}
