// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PROOF_FILE_ROWS_H
#define VELMARCON_BATCH_PROOF_FILE_ROWS_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "system/sequential_file.h"

/// The rows of 16-bit pixels in a file, from top to bottom: an image that is only looked at needs no memory
/// of its size.
class FileRows {
  public:
    /// Rows of `row_words` words each, from where `file` stands, at an even byte; it is open and outlives the
    /// object. What the file does not hold in its next `length` bytes is 0.
    FileRows(SequentialFile& file, std::uint64_t length, std::size_t row_words);

    /// The next row, which stays until the next call; nothing when the file cannot be read.
    std::optional<std::span<const std::uint16_t>> Next();

  private:
    SequentialFile& file_;
    std::uint64_t left_;              ///< bytes that have not been looked at
    std::vector<std::uint16_t> row_;  ///< for one that the file does not hold whole
};

#endif  // VELMARCON_BATCH_PROOF_FILE_ROWS_H
