// SPDX-License-Identifier: MIT
#ifndef VELMARCON_ERRORS_VERSION_H
#define VELMARCON_ERRORS_VERSION_H

/// The version of all programs, as CMakeLists.txt states it: for what they print of themselves.
extern const char* const kVersion;

#endif  // VELMARCON_ERRORS_VERSION_H
