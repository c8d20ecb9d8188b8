// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_REPLACEMENT_FILE_H
#define VELMARCON_SYSTEM_REPLACEMENT_FILE_H

#include <cstdint>
#include <span>
#include <string>

#include "system/file_system.h"

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

    /// Starts the file that will be `path`. Returns 0 or the system's error number, EEXIST when something
    /// stands there that is not replaced. Called once.
    [[nodiscard]] int Open(const std::string& path, Existing existing);

    /// Appends `bytes`. Returns whether everything has gone well so far; Commit tells what has not.
    bool Write(std::span<const char> bytes);

    /// Gives the file its name, when it is exactly `size` bytes long. An existing file is replaced only after
    /// the new one has reached the disk, which takes over who may do what with it. Returns 0 or the system's
    /// error number.
    [[nodiscard]] int Commit(std::uint64_t size);

  private:
    int Look(file_system::Kind& kind) const;
    int CreatePart(file_system::Readers readers);
    int CheckWritten(std::uint64_t size) const;
    int Prepare(file_system::Kind replaced) const;
    int TakeName(file_system::Kind replaced) const;

    Existing existing_ = Existing::kKeep;
    std::string final_path_;
    std::string part_path_;  ///< empty: there is nothing to remove
    int descriptor_ = -1;    ///< of the part
    int error_ = 0;          ///< of the first write that failed
};

#endif  // VELMARCON_SYSTEM_REPLACEMENT_FILE_H
