// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_SYSTEM_ERROR_H
#define VELMARCON_SYSTEM_SYSTEM_ERROR_H

#include <system_error>

/// The errors of the operating system. What stands in system/ gives them as numbers of <cerrno>, those of
/// Windows, too, in the generic category: they compare with std::errc.
namespace system_error {

/// The error of the system call that failed last; always one.
std::error_code Last();

/// What the error means, in words.
const char* Text(std::error_code error);

}  // namespace system_error

#endif  // VELMARCON_SYSTEM_SYSTEM_ERROR_H
