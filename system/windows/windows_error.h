// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_WINDOWS_WINDOWS_ERROR_H
#define VELMARCON_SYSTEM_WINDOWS_WINDOWS_ERROR_H

/// The number of <cerrno> for the error of the call of Windows that failed last; never 0. EBUSY: another
/// program has the file open and does not share it.
int ErrnoOfLastWindowsError();

#endif  // VELMARCON_SYSTEM_WINDOWS_WINDOWS_ERROR_H
