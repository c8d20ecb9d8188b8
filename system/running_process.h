// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_RUNNING_PROCESS_H
#define VELMARCON_SYSTEM_RUNNING_PROCESS_H

#include <cstdint>
#include <string>

/// Distinguishes this run from others that are active at the same time.
namespace running_process {

/// The computer's name, as the system states it.
std::string HostName();

/// The number of this process.
std::uint64_t Number();

/// Whether this computer has no running process with that number. A process that has ended is gone, even if
/// its parent has not noticed yet.
bool IsGone(std::uint64_t number);

/// A number that nobody can guess; if the system has no source of such numbers, one made from the time.
std::uint64_t RandomNumber();

}  // namespace running_process

#endif  // VELMARCON_SYSTEM_RUNNING_PROCESS_H
