// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_INPUT_FILE_H
#define VELMARCON_SYSTEM_INPUT_FILE_H

#include <cstdint>
#include <fstream>
#include <functional>
#include <span>
#include <string>
#include <system_error>

/// A file that is only read. Opens plain files only: a folder, a pipe or a device, which might never end,
/// counts as a file that cannot be opened. Symbolic links are followed.
class InputFile {
  public:
    /// Opens `path`. Returns false if that is not possible.
    [[nodiscard]] bool Open(const std::string& path);

    /// Length in bytes at the time when the file was opened.
    std::uint64_t size() const { return size_; }

    /// Reads the start of the file into `bytes` with one read; bytes past the end that the file had when it
    /// was opened become 0. Returns false if bytes before that end could not be read, because the disk failed
    /// or the file has become shorter.
    [[nodiscard]] bool ReadStart(std::span<std::uint8_t> bytes) { return ReadAt(0, bytes); }

    /// The same from `offset` on.
    [[nodiscard]] bool ReadAt(std::uint64_t offset, std::span<std::uint8_t> bytes);

    /// Passes the file's bytes, from its start to the end that it had when it was opened, to `take`, piece by
    /// piece, as long as `take` returns true. Returns false if `take` did, or if not all of the bytes could
    /// be read.
    [[nodiscard]] bool ReadPieces(const std::function<bool(std::span<const char>)>& take);

    /// Why Open or ReadPieces failed; no error if `take` ended the reading.
    std::error_code error() const { return error_; }

    /// For reading parts of the file. Use only after Open has succeeded.
    std::ifstream& stream() { return stream_; }

  private:
    std::ifstream stream_;
    std::uint64_t size_ = 0;
    std::error_code error_;
};

#endif  // VELMARCON_SYSTEM_INPUT_FILE_H
