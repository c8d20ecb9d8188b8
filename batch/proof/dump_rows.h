// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PROOF_DUMP_ROWS_H
#define VELMARCON_BATCH_PROOF_DUMP_ROWS_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "system/input_file.h"

/// The rows of a RAW or BIA file from top to bottom, read a few at a time: a picture that is only looked at
/// needs no memory of its size. What the file does not hold is 0.
class DumpRows {
  public:
    /// Opens the file at `path`. Returns false when that is not possible.
    [[nodiscard]] bool Open(const std::string& path);

    /// Length of the file in bytes.
    std::uint64_t size() const { return file_.size(); }

    /// Nothing is read of the file from byte `size` on.
    void CutAt(std::uint64_t size);

    /// The pixels of the next row, which stay until the next call; nothing when the file cannot be read.
    std::optional<std::span<const std::uint16_t>> Next();

  private:
    bool ReadBlock();

    InputFile file_;
    std::uint64_t left_ = 0;            ///< bytes of the file that hold rows and have not been read
    std::vector<std::uint16_t> block_;  ///< whole rows
    std::size_t position_ = 0;          ///< of the next row in the block
};

#endif  // VELMARCON_BATCH_PROOF_DUMP_ROWS_H
