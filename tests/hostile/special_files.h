// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_HOSTILE_SPECIAL_FILES_H
#define VELMARCON_TESTS_HOSTILE_SPECIAL_FILES_H

#include <ostream>
#include <string>
#include <vector>

namespace hostile {

/// Something that has a name in a folder and is no plain file.
struct SpecialFile {
    const char* name;
    /// Makes it at `path`. Returns whether that worked.
    bool (*make)(const std::string& path);
    /// The device that it leads to, which a small system may lack; empty: none.
    std::string device = {};

    friend void PrintTo(const SpecialFile& file, std::ostream* out) { *out << file.name; }
};

/// Pipes and devices that would never end or never begin, and links that lead nowhere.
const std::vector<SpecialFile>& SpecialFiles();

}  // namespace hostile

#endif  // VELMARCON_TESTS_HOSTILE_SPECIAL_FILES_H
