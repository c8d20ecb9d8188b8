// SPDX-License-Identifier: MIT
#ifndef VELMARCON_FUZZ_SCRATCH_FOLDER_H
#define VELMARCON_FUZZ_SCRATCH_FOLDER_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// A temporary folder for this process (in TMPDIR). It is removed with its contents at the end, unless the
/// process crashes. A system call that fails ends the process.
class ScratchFolder {
  public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ScratchFolder(ScratchFolder&&) = delete;
    ScratchFolder& operator=(ScratchFolder&&) = delete;

    const std::string& path() const { return path_; }
    /// The path with a separator at the end.
    std::string prefix() const { return path_ + "/"; }

    /// Removes the file `name` and writes it again: unlike a replaced file, a new one is not flushed to disk.
    void Write(const std::string& name, std::span<const std::uint8_t> bytes) const;
    void Write(const std::string& name, std::string_view text) const;
    /// All bytes of the file `name`, which must exist.
    std::vector<std::uint8_t> Read(const std::string& name) const;
    /// Removes the file `name` if it exists.
    void Remove(const std::string& name) const;
    /// The names in the folder, sorted.
    std::vector<std::string> Names() const;

  private:
    std::string path_;
};

#endif  // VELMARCON_FUZZ_SCRATCH_FOLDER_H
