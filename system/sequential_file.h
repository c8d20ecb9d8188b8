// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_SEQUENTIAL_FILE_H
#define VELMARCON_SYSTEM_SEQUENTIAL_FILE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "system/file_mapping.h"
#include "system/input_file.h"

/// A plain file whose bytes are looked at once, from its start to its end: without a copy where the system
/// can map it, else through a small buffer.
class SequentialFile {
  public:
    enum class Access { kMapped, kCopied };

    /// With kCopied the file is not mapped.
    explicit SequentialFile(Access access = Access::kMapped) : access_(access) {}

    /// Opens the file at `path`, as InputFile does. Called once.
    [[nodiscard]] bool Open(const std::string& path);

    /// Length in bytes, when it was opened.
    std::uint64_t size() const;

    /// Passes over the next `length` bytes, or those up to the end.
    void Skip(std::uint64_t length);

    /// The next `length` bytes, or those up to the end. They stay until the next call. Nothing when they, or
    /// any before, cannot be read: the disk failed, or someone made the file shorter.
    std::optional<std::span<const std::uint8_t>> Next(std::size_t length);

    /// Asked after bytes were looked at: whether all were the file's.
    bool IsIntact() const { return mapping_.IsIntact(); }

  private:
    std::optional<std::span<const std::uint8_t>> NextCopied(std::size_t length);

    Access access_;
    FileMapping mapping_;
    InputFile file_;  ///< open when the file is not mapped
    std::uint64_t position_ = 0;
    std::vector<std::uint8_t> buffer_;
    std::size_t used_ = 0;  ///< bytes of the buffer that were handed out
};

#endif  // VELMARCON_SYSTEM_SEQUENTIAL_FILE_H
