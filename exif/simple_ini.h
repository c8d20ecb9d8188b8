// SPDX-License-Identifier: MIT
#ifndef VELMARCON_EXIF_SIMPLE_INI_H
#define VELMARCON_EXIF_SIMPLE_INI_H

#include <string>

// The library's templates are declared here and compiled once, in simple_ini.cpp.
#include <SimpleIni.h>

namespace simple_ini {

using File = CSimpleIniA;  ///< narrow characters, section and key names compared without case

/// Loads the INI file at `path` into `ini`. Returns 0 or the library's negative error code. What is not a
/// plain file (a folder, a pipe, a device) is SI_FILE, without being opened. Throws std::bad_alloc when there
/// is no memory for it.
[[nodiscard]] int Load(const std::string& path, File& ini);

/// Whether the library takes the two key names for the same key.
bool SameName(const char* a, const char* b);

}  // namespace simple_ini

#endif  // VELMARCON_EXIF_SIMPLE_INI_H
