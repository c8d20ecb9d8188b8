// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_READ_BACK_H
#define VELMARCON_BATCH_READ_BACK_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// A DNG that is read whole, to be looked at from all sides. Keeps its memory from file to file.
class ReadBack {
  public:
    /// Returns whether all of the file at `path` could be read.
    [[nodiscard]] bool Load(const std::string& path);

    std::span<const std::uint8_t> bytes() const { return std::span(bytes_).first(length_); }

  private:
    std::vector<std::uint8_t> bytes_;
    std::size_t length_ = 0;
};

#endif  // VELMARCON_BATCH_READ_BACK_H
