// SPDX-License-Identifier: MIT
#ifndef VELMARCON_FUZZ_SCRATCH_FOLDER_H
#define VELMARCON_FUZZ_SCRATCH_FOLDER_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// A folder of this process's own in the folder for temporary files (TMPDIR); gone with all its contents at
/// the end, unless that is a crash. A system call that fails ends the process.
class ScratchFolder {
  public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ScratchFolder(ScratchFolder&&) = delete;
    ScratchFolder& operator=(ScratchFolder&&) = delete;

    const std::string& path() const { return path_; }
    /// With a separator behind it.
    std::string prefix() const { return path_ + "/"; }

    /// Writes the file `name` anew: what is new need not wait for the disk, unlike what replaces a file.
    void Write(const std::string& name, std::span<const std::uint8_t> bytes) const;
    void Write(const std::string& name, std::string_view text) const;
    /// All bytes of the file `name`, which must be there.
    std::vector<std::uint8_t> Read(const std::string& name) const;
    /// Removes the file `name`, if it is there.
    void Remove(const std::string& name) const;
    /// The names in the folder, sorted.
    std::vector<std::string> Names() const;

  private:
    std::string path_;
};

#endif  // VELMARCON_FUZZ_SCRATCH_FOLDER_H
