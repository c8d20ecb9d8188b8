// SPDX-License-Identifier: MIT
#ifndef VELMARCON_INPUT_DARK_ROWS_H
#define VELMARCON_INPUT_DARK_ROWS_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "base/pixel.h"
#include "system/input_file.h"

/// The rows of a dark frame, read from top to bottom in pieces that the caches of a processor hold: a second
/// image in memory would cost more time than reading it.
class DarkRows {
  public:
    /// Rows in a piece.
    static constexpr std::size_t kPieceRows = 32;

    /// Counts the first `size` bytes of the file: what it has no more of is 0. The words of a piece are kept
    /// in `words`, whose old content does not matter.
    DarkRows(std::uint64_t size, std::vector<Pixel>& words) : size_(size), words_(words) {}

    /// Opens the BIA file at `path`. Returns false if it can't be opened.
    [[nodiscard]] bool Open(const std::string& path) { return file_.Open(path); }

    /// The pixels of the next row, as long as there is one, valid until the next call; none if the file can't
    /// be read.
    std::span<const Pixel> Next();

  private:
    bool ReadPiece();

    std::uint64_t size_;
    std::vector<Pixel>& words_;
    InputFile file_;
    std::size_t row_ = 0;    ///< the next one
    std::size_t begin_ = 0;  ///< index of the first of `words_` in the file
    std::size_t end_ = 0;    ///< index of the word after them
};

#endif  // VELMARCON_INPUT_DARK_ROWS_H
