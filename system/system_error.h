// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_SYSTEM_ERROR_H
#define VELMARCON_SYSTEM_SYSTEM_ERROR_H

#include <system_error>

/// The errors of the operating system. All of system/ reports them as numbers from <cerrno> in the generic
/// category, also on Windows, so that they compare with std::errc.
namespace system_error {

/// The error of the system call that failed last; never "no error".
std::error_code Last();

/// The meaning of the error, in words.
const char* Text(std::error_code error);

}  // namespace system_error

#endif  // VELMARCON_SYSTEM_SYSTEM_ERROR_H
