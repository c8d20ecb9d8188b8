// SPDX-License-Identifier: MIT
#ifndef VELMARCON_EXIF_SIMPLE_INI_H
#define VELMARCON_EXIF_SIMPLE_INI_H

#include <cstdint>
#include <string>

// The library's templates are declared here and compiled once, in simple_ini.cpp.
#include <SimpleIni.h>

namespace simple_ini {

using File = CSimpleIniA;  ///< narrow characters, section and key names compared without case

/// Bytes up to which a file is loaded. A camera takes some 110 kB of the sensor database, a lens some 300
/// bytes of the lens database: there is room for seventy cameras. The library makes up to 70 times the file's
/// size of memory of it (half a GB of a file of nothing but section names) and takes a few seconds at most.
constexpr std::uint64_t kLongestFile = 8ULL * 1024 * 1024;

/// Loads the INI file at `path` into `ini`. Returns 0 or the library's negative error code. What is not a
/// plain file (a folder, a pipe, a device) is SI_FILE, without being opened; so is a file that is longer than
/// kLongestFile, without being read. Throws std::bad_alloc when there is no memory for it.
[[nodiscard]] int Load(const std::string& path, File& ini);

/// The same; `complete` tells whether all of the file was taken. The library ends at a NUL byte, which no
/// text holds: the file was damaged, or saved in another encoding.
[[nodiscard]] int Load(const std::string& path, File& ini, bool& complete);

/// Whether the library takes the two key names for the same key.
bool SameName(const char* a, const char* b);

}  // namespace simple_ini

#endif  // VELMARCON_EXIF_SIMPLE_INI_H
