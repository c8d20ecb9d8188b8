// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_REPLACEMENT_FILE_H
#define VELMARCON_SYSTEM_REPLACEMENT_FILE_H

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <system_error>

#include "system/file_system.h"
#include "system/handle.h"

/// A file that is written completely or not at all. It is written as a part file in its final folder and
/// takes its final name in one step when it is complete. Until then, anything that has that name is
/// untouched; afterwards no part file is left.
class ReplacementFile {
  public:
    /// What to do if the final name is taken. A file without write permission, a folder, a pipe or a device
    /// is never replaced.
    enum class Existing {
        kKeep,          ///< replace nothing, not even a broken link
        kReplace,       ///< replace a file; replace a symbolic link itself, not what it points to
        kReplaceTarget  ///< replace a file, or the file to which a symbolic link leads
    };

    ReplacementFile() = default;
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;
    ReplacementFile(ReplacementFile&&) = delete;
    ReplacementFile& operator=(ReplacementFile&&) = delete;

    /// Removes the part file, unless Commit succeeded.
    ~ReplacementFile();

    /// Starts the file that will be `path`, with `permissions` if it does not replace another file. Returns
    /// what went wrong: file_exists if `path` exists and may not be replaced. Call it only once.
    [[nodiscard]] std::error_code Open(const std::string& path, Existing existing,
                                       std::filesystem::perms permissions = file_system::kAsUsual);

    /// Starts the file `path` as a copy of the file `original`: like Open with kKeep, but Commit gives the
    /// copy the owner, mode, access control list and attributes of `original`.
    [[nodiscard]] std::error_code OpenCopy(const std::string& path, const std::string& original);

    /// Appends `bytes`. Commit reports a failure.
    void Write(std::span<const char> bytes);

    /// Whether every Write so far has succeeded.
    [[nodiscard]] bool IsGood() const { return !error_; }

    /// Gives the file its name if it is exactly `size` bytes long. An existing file is replaced only after
    /// the new one is on the disk and has the old one's owner and permissions. Returns what went wrong.
    [[nodiscard]] std::error_code Commit(std::uint64_t size);

    /// Like Commit, but waits until the file and its name are on the disk.
    [[nodiscard]] std::error_code CommitToDisk(std::uint64_t size);

  private:
    [[nodiscard]] std::error_code Look(file_system::Kind& kind) const;
    [[nodiscard]] std::error_code CreatePart(std::filesystem::perms permissions);
    [[nodiscard]] std::error_code CheckWritten(std::uint64_t size) const;
    [[nodiscard]] std::error_code Prepare(file_system::Kind replaced) const;
    [[nodiscard]] std::error_code TakeName(file_system::Kind replaced) const;

    Existing existing_ = Existing::kKeep;
    std::string final_path_;
    std::string original_;   ///< empty if the file is not a copy
    std::string part_path_;  ///< empty if there is nothing to remove
    Handle part_;
    std::error_code error_;  ///< the error of the first write that failed
};

#endif  // VELMARCON_SYSTEM_REPLACEMENT_FILE_H
