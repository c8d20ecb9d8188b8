// SPDX-License-Identifier: MIT
#include "input/dark_rows.h"

#include <algorithm>

#include "input/raw_layout.h"
#include "input/raw_words.h"

std::span<const Pixel> DarkRows::Next() {
    const std::size_t start = raw_layout::RowStart(row_);
    if (start >= end_ && !ReadPiece()) {
        return {};
    }
    ++row_;
    return std::span<const Pixel>(words_).subspan(start - begin_, raw_layout::kImageWidth);
}

/// The pieces are all of the file: the first has the leading words, too.
bool DarkRows::ReadPiece() {
    begin_ = end_;
    end_ = std::min(raw_layout::RowStart(row_ + kPieceRows), raw_layout::kFileWords);
    words_.resize(end_ - begin_);
    return raw_words::Read(file_, size_, begin_, words_);
}
