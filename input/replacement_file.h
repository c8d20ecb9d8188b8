// SPDX-License-Identifier: MIT
#ifndef VELMARCON_INPUT_REPLACEMENT_FILE_H
#define VELMARCON_INPUT_REPLACEMENT_FILE_H

#include <cstdint>
#include <fstream>
#include <string>

/// A file that is written whole or not at all. It is written beside its final name, under a name that no
/// search for images or databases picks up, and takes the final name in one step when it is complete. Until
/// then whatever stands there is untouched; afterwards nothing else is left.
///
/// The final name may be a symbolic link: the file that it points to is replaced, the link stays. A file that
/// may not be written is not replaced.
class ReplacementFile {
  public:
    ReplacementFile() = default;
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;
    ReplacementFile(ReplacementFile&&) = delete;
    ReplacementFile& operator=(ReplacementFile&&) = delete;

    /// Removes what was written, unless Commit succeeded.
    ~ReplacementFile();

    /// Starts the file that will be `path`. Returns 0 or the system's error number. Called once.
    [[nodiscard]] int Open(const std::string& path);

    /// Where to write.
    std::ofstream& stream() { return stream_; }

    /// Whether everything has gone well so far. Asked after each block that was written, so that the reason
    /// of a failure is the one that Commit returns.
    bool Good();

    /// Closes the file and gives it its name, when it is exactly `size` bytes long. An existing file is
    /// replaced only after the new one has reached the disk. Returns 0 or the system's error number.
    [[nodiscard]] int Commit(std::uint64_t size);

  private:
    int CreatePart(const std::string& folder);
    int OpenStream();

    std::string final_path_;
    std::string part_path_;  ///< empty: there is nothing to remove
    int lock_ = -1;          ///< descriptor of the part, locked while it is being written
    std::ofstream stream_;
    int error_ = 0;  ///< of the first write that failed
};

#endif  // VELMARCON_INPUT_REPLACEMENT_FILE_H
