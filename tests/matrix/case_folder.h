// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_CASE_FOLDER_H
#define VELMARCON_TESTS_MATRIX_CASE_FOLDER_H

#include <sys/stat.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/matrix/case.h"

namespace matrix {

/// Large files that all cases share: no case damages them.
struct SharedFiles {
    std::string raw;   ///< path; half a sensor dump
    std::string dark;  ///< path; a dark frame of the same length
    std::uint64_t raw_hash = 0;
    std::uint64_t dark_hash = 0;
};

/// Writes them into `folder`. Returns an empty text, or what failed.
std::string WriteSharedFiles(const std::string& folder, SharedFiles& shared);

/// The folder in which cases run, one after the other: bin/ holds the databases, pair/ or dng/ the input,
/// out/ takes the result.
class CaseFolder {
  public:
    /// Below `parent`, which is on the file system of the shared files.
    CaseFolder(const std::string& parent, const std::string& name, SharedFiles shared);

    const std::string& path() const { return path_; }
    std::string Result() const { return path_ + "/out/L1.DNG"; }

    /// Lays out the files of a case afresh. Returns an empty text, or what failed.
    std::string Prepare(const OptionSet& options, const Files& files);
    /// The command line that follows the program's name.
    static std::vector<std::string> Arguments(const OptionSet& options);

    /// What a run has changed that it may not change: an input, or the files that lie there. `result` tells
    /// whether a new DNG must be there, `new_database` whether sensdb.ini may be another. Empty: nothing.
    std::string FaultAfter(const OptionSet& options, const Files& files, bool result,
                           bool new_database) const;
    /// The same for the shared files, byte for byte.
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
