// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_INI_FILE_H
#define VELMARCON_SYSTEM_INI_FILE_H

#include <cstdint>
#include <optional>
#include <string>

// The library's templates are declared here and compiled once, in simple_ini.cpp.
#include <SimpleIni.h>

namespace ini_file {

using File = CSimpleIniA;  ///< narrow characters, section and key names compared without case

/// Bytes up to which a file is loaded. A camera takes some 110 kB of the sensor database, a lens some 300
/// bytes of the lens database: there is room for seventy cameras. The library makes up to 70 times the file's
/// size of memory of it (half a GB of a file of nothing but section names) and takes a few seconds at most.
constexpr std::uint64_t kLongestFile = 8ULL * 1024 * 1024;

/// The text of the file at `path`; nothing when it is not a plain file (a folder, a pipe, a device), which is
/// found out without opening it, when it is longer than kLongestFile, or when it cannot be read to its end.
std::optional<std::string> Read(const std::string& path);

/// Makes `ini` of a file's text. Returns 0 or the library's negative error code. `complete` tells whether all
/// of the text was taken: the library ends at a NUL byte, which no text holds; the file was damaged, or saved
/// in another encoding. Throws std::bad_alloc when there is no memory for it.
[[nodiscard]] int Parse(const std::string& text, File& ini, bool& complete);

/// Reads and parses the file at `path`. Returns 0 or the library's negative error code, SI_FILE when it
/// cannot be read. Throws std::bad_alloc when there is no memory for it.
[[nodiscard]] int Load(const std::string& path, File& ini);

/// Whether the library takes the two key names for the same key.
bool SameName(const char* a, const char* b);

}  // namespace ini_file

#endif  // VELMARCON_SYSTEM_INI_FILE_H
