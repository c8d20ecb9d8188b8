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

/// A file that is written whole or not at all. It is written beside its final name, under a name that no
/// search for images or databases picks up, and takes the final name in one step when it is complete. Until
/// then whatever stands there is untouched; afterwards nothing else is left.
class ReplacementFile {
  public:
    /// What becomes of that which stands at the final name. A file that may not be written, a folder, a pipe
    /// or a device is not replaced in any case.
    enum class Existing {
        kKeep,          ///< the final name is taken only if nothing at all stands there
        kReplace,       ///< a file is replaced, and so is a symbolic link: what it points to stays as it is
        kReplaceTarget  ///< the file to which a symbolic link leads is replaced, the link stays
    };

    ReplacementFile() = default;
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;
    ReplacementFile(ReplacementFile&&) = delete;
    ReplacementFile& operator=(ReplacementFile&&) = delete;

    /// Removes what was written, unless Commit succeeded.
    ~ReplacementFile();

    /// Starts the file that will be `path`, with `permissions` when it does not replace another one. Returns
    /// what went wrong: file_exists when something stands there that is not replaced. Called once.
    [[nodiscard]] std::error_code Open(const std::string& path, Existing existing,
                                       std::filesystem::perms permissions = file_system::kAsUsual);

    /// Appends `bytes`. Commit tells what has failed.
    void Write(std::span<const char> bytes);

    /// Whether all has been written so far.
    [[nodiscard]] bool IsGood() const { return !error_; }

    /// Gives the file its name, when it is exactly `size` bytes long. An existing file is replaced only after
    /// the new one has reached the disk, which takes over who may do what with it. Returns what went wrong.
    [[nodiscard]] std::error_code Commit(std::uint64_t size);

    /// The same, and waits until the file and its name are on the disk.
    [[nodiscard]] std::error_code CommitToDisk(std::uint64_t size);

  private:
    [[nodiscard]] std::error_code Look(file_system::Kind& kind) const;
    [[nodiscard]] std::error_code CreatePart(std::filesystem::perms permissions);
    [[nodiscard]] std::error_code CheckWritten(std::uint64_t size) const;
    [[nodiscard]] std::error_code Prepare(file_system::Kind replaced) const;
    [[nodiscard]] std::error_code TakeName(file_system::Kind replaced) const;

    Existing existing_ = Existing::kKeep;
    std::string final_path_;
    std::string part_path_;  ///< empty: there is nothing to remove
    Handle part_;
    std::error_code error_;  ///< of the first write that failed
};

#endif  // VELMARCON_SYSTEM_REPLACEMENT_FILE_H
