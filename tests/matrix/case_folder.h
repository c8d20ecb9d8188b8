// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_CASE_FOLDER_H
#define VELMARCON_TESTS_MATRIX_CASE_FOLDER_H

#include <sys/stat.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/matrix/case.h"

namespace matrix {

/// Large files that all cases share, because no case damages them.
struct SharedFiles {
    std::string raw;   ///< path of half a sensor dump
    std::string dark;  ///< path of a dark frame of the same length
    std::uint64_t raw_hash = 0;
    std::uint64_t dark_hash = 0;
};

/// Writes the shared files into `folder`. Returns an error message, empty on success.
std::string WriteSharedFiles(const std::string& folder, SharedFiles& shared);

/// The folder in which cases run one after another: bin/ holds the databases, pair/ or dng/ the input, and
/// out/ receives the result.
class CaseFolder {
  public:
    /// Creates the folder below `parent`, which must be on the file system of the shared files.
    CaseFolder(const std::string& parent, const std::string& name, SharedFiles shared);

    const std::string& path() const { return path_; }
    std::string Result() const { return path_ + "/out/L1.DNG"; }

    /// Replaces the content of the folder with the files of a case. Returns an error message, empty on
    /// success.
    std::string Prepare(const OptionSet& options, const Files& files);
    /// The command line after the program's name.
    static std::vector<std::string> Arguments(const OptionSet& options);

    /// Checks that a run has not changed the inputs or other files. `result` says whether there must be a new
    /// DNG, `new_database` whether sensdb.ini may have changed. Returns a description of the fault, empty if
    /// there is none.
    std::string FaultAfter(const OptionSet& options, const Files& files, bool result,
                           bool new_database) const;
    /// Checks the shared files byte for byte, and returns a fault like FaultAfter.
    std::string FaultInSharedFiles() const;

  private:
    std::vector<std::string> ExpectedNames(const OptionSet& options, bool result) const;

    std::string path_;
    SharedFiles shared_;
    struct stat raw_before_ = {};
    struct stat dark_before_ = {};
};

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_CASE_FOLDER_H
