// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_POWERCUT_DISK_MEMORY_H
#define VELMARCON_TESTS_POWERCUT_DISK_MEMORY_H

#include <cstdint>
#include <memory>
#include <span>

namespace powercut {

/// The bytes of a disk, mapped from a file in memory, either shared with the file or as a private copy.
class DiskBytes {
  public:
    /// Maps `size` bytes of `file`. Writes go to the file if `shared` is set. Ends the process if there is
    /// not enough memory.
    DiskBytes(int file, std::uint64_t size, bool shared);
    ~DiskBytes();
    DiskBytes(const DiskBytes&) = delete;
    DiskBytes& operator=(const DiskBytes&) = delete;
    DiskBytes(DiskBytes&&) = delete;
    DiskBytes& operator=(DiskBytes&&) = delete;

    std::span<std::uint8_t> bytes() const { return bytes_; }

  private:
    std::span<std::uint8_t> bytes_;
};

/// A disk in memory: its state before the run that is cut short, and any number of copies of that state.
class DiskMemory {
  public:
    /// A disk of zeros.
    explicit DiskMemory(std::uint64_t size);
    ~DiskMemory();
    DiskMemory(const DiskMemory&) = delete;
    DiskMemory& operator=(const DiskMemory&) = delete;
    DiskMemory(DiskMemory&&) = delete;
    DiskMemory& operator=(DiskMemory&&) = delete;

    /// The state before the run, which can be modified.
    std::unique_ptr<DiskBytes> Before() const { return std::make_unique<DiskBytes>(file_, size_, true); }
    /// A private copy of that state; changes are lost with the copy.
    std::unique_ptr<DiskBytes> Copy() const { return std::make_unique<DiskBytes>(file_, size_, false); }

  private:
    int file_;
    std::uint64_t size_;
};

}  // namespace powercut

#endif  // VELMARCON_TESTS_POWERCUT_DISK_MEMORY_H
