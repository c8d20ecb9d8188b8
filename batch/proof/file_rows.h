// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PROOF_FILE_ROWS_H
#define VELMARCON_BATCH_PROOF_FILE_ROWS_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "system/input_file.h"

/// Takes the bytes of a file in their order, as they are read.
using ByteObserver = std::function<void(std::span<const std::uint8_t>)>;

/// The rows of 16-bit pixels in a file, from top to bottom, read a few at a time: an image that is only
/// looked at needs no memory of its size.
class FileRows {
  public:
    /// Rows of `row_words` words each, from byte `start` of `file` on, which is open and outlives the object.
    /// What the file does not hold before byte `end` is 0.
    FileRows(InputFile& file, std::uint64_t start, std::uint64_t end, std::size_t row_words,
             ByteObserver observer = nullptr);

    /// The next row, which stays until the next call; nothing when the file cannot be read.
    std::optional<std::span<const std::uint16_t>> Next();

  private:
    bool ReadBlock();

    InputFile& file_;
    std::uint64_t left_;  ///< bytes of the file that hold rows and have not been read
    std::size_t row_words_;
    ByteObserver observer_;
    std::vector<std::uint16_t> block_;  ///< whole rows
    std::size_t position_;              ///< of the next row in the block
};

#endif  // VELMARCON_BATCH_PROOF_FILE_ROWS_H
