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

/// The longest file that is loaded, in bytes. In the sensor database a camera takes about 110 kB, in the lens
/// database a lens takes about 300 bytes: there is room for seventy cameras. The library needs up to 70 times
/// the file's size in memory (half a GB for a file of nothing but section names), and a few seconds at most.
constexpr std::uint64_t kLongestFile = 8ULL * 1024 * 1024;

/// The text of the file at `path`. Returns std::nullopt if it is longer than kLongestFile, if it cannot be
/// read to its end, or if it is a folder, a pipe or a device, which is not opened.
std::optional<std::string> Read(const std::string& path);

/// Parses a file's text into `ini`. Returns 0 or the library's negative error code. The library stops at a
/// NUL byte, which only a damaged file contains, or one saved in another encoding; `complete` tells whether
/// it read all of the text. Throws std::bad_alloc if there is not enough memory.
[[nodiscard]] int Parse(const std::string& text, File& ini, bool& complete);

/// Reads and parses the file at `path`. Returns 0 or the library's negative error code, SI_FILE if it cannot
/// be read. Throws std::bad_alloc if there is not enough memory.
[[nodiscard]] int Load(const std::string& path, File& ini);

/// Whether the library treats the two key names as the same key.
bool SameName(const char* a, const char* b);

}  // namespace ini_file

#endif  // VELMARCON_SYSTEM_INI_FILE_H
