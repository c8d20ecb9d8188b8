// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_SYSTEM_REPLACE_H
#define VELMARCON_TESTS_SYSTEM_REPLACE_H

#include <string>
#include <string_view>

#include "system/replacement_file.h"
#include "tests/support/files.h"

/// The bytes of a file as text.
inline std::string Content(const std::string& path) {
    const auto bytes = support::ReadFile(path);
    return {bytes.begin(), bytes.end()};
}

/// Writes `text` to a ReplacementFile for `path` and commits it. Returns the first error number, or 0.
inline int Replace(const std::string& path, std::string_view text,
                   ReplacementFile::Existing existing = ReplacementFile::Existing::kReplace) {
    ReplacementFile file;
    if (const int error = file.Open(path, existing).value(); error != 0) {
        return error;
    }
    file.Write(text);
    return file.Commit(text.size()).value();
}

#endif  // VELMARCON_TESTS_SYSTEM_REPLACE_H
