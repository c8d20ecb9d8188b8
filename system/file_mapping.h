// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_FILE_MAPPING_H
#define VELMARCON_SYSTEM_FILE_MAPPING_H

#include <csignal>
#include <cstdint>
#include <span>
#include <string>

/// The bytes of a plain file where the system keeps them, so that they are looked at without a copy.
class FileMapping {
  public:
    FileMapping() = default;
    ~FileMapping();
    FileMapping(const FileMapping&) = delete;
    FileMapping& operator=(const FileMapping&) = delete;
    FileMapping(FileMapping&&) = delete;
    FileMapping& operator=(FileMapping&&) = delete;

    /// Maps the file at `path`, of at most `longest` bytes. Called once. Returns false when that is not
    /// possible, which does not mean that the file cannot be read: some file systems map none, and on Windows
    /// none is mapped, for a disk that fails would end the program there.
    [[nodiscard]] bool Map(const std::string& path, std::uint64_t longest);

    /// All of the file, as long as it was; those bytes that cannot be had any more are 0.
    std::span<const std::uint8_t> bytes() const { return bytes_; }

    /// False after bytes were looked at that could not be had: the disk failed, or someone made the file
    /// shorter.
    bool IsIntact() const;

    /// Called when a byte at `address` cannot be had. Returns whether it is one of this file, and 0 from now
    /// on, as are those after it.
    bool PutZerosFrom(std::uintptr_t address);

    /// The mapping that was there before this one; none if nullptr.
    FileMapping* earlier() const { return earlier_; }

  private:
    std::span<const std::uint8_t> bytes_;
    FileMapping* earlier_ = nullptr;
    volatile std::sig_atomic_t damaged_ = 0;
};

#endif  // VELMARCON_SYSTEM_FILE_MAPPING_H
