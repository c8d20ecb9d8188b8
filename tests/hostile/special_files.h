// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_HOSTILE_SPECIAL_FILES_H
#define VELMARCON_TESTS_HOSTILE_SPECIAL_FILES_H

#include <ostream>
#include <string>
#include <vector>

namespace hostile {

/// A directory entry that is not a plain file.
struct SpecialFile {
    const char* name;
    /// Creates it at `path`. Returns whether that worked.
    bool (*make)(const std::string& path);
    /// The device that it needs, which a small system may lack; empty: none.
    std::string device = {};

    friend void PrintTo(const SpecialFile& file, std::ostream* out) { *out << file.name; }
};

/// Pipes and devices that block or never end, and links that lead nowhere.
const std::vector<SpecialFile>& SpecialFiles();

}  // namespace hostile

#endif  // VELMARCON_TESTS_HOSTILE_SPECIAL_FILES_H
