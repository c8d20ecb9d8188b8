// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_INPUT_FILE_H
#define VELMARCON_SYSTEM_INPUT_FILE_H

#include <cstdint>
#include <fstream>
#include <functional>
#include <span>
#include <string>
#include <system_error>

/// A file that is only read. Plain files only: a folder, a pipe or a device (whose reading might never end)
/// counts as one that cannot be opened; a symbolic link is followed.
class InputFile {
  public:
    /// Opens `path`. Returns false when that is not possible.
    [[nodiscard]] bool Open(const std::string& path);

    /// Length in bytes, when it was opened.
    std::uint64_t size() const { return size_; }

    /// Reads the file's start into `bytes` with one read. What the file did not hold when it was opened
    /// becomes 0. Returns false when what it did hold could not be read: the disk failed, or someone made it
    /// shorter.
    [[nodiscard]] bool ReadStart(std::span<std::uint8_t> bytes);

    /// Hands the file's bytes, from its start to where it ended when it was opened, to `take`, piece by
    /// piece, as long as that returns true. Returns false when it did not, or when not all could be read.
    [[nodiscard]] bool ReadPieces(const std::function<bool(std::span<const char>)>& take);

    /// What Open or ReadPieces failed at; no error when `take` has ended the reading.
    std::error_code error() const { return error_; }

    /// For reading parts of the file, when it was opened.
    std::ifstream& stream() { return stream_; }

  private:
    std::ifstream stream_;
    std::uint64_t size_ = 0;
    std::error_code error_;
};

#endif  // VELMARCON_SYSTEM_INPUT_FILE_H
