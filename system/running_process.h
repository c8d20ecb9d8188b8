// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_RUNNING_PROCESS_H
#define VELMARCON_SYSTEM_RUNNING_PROCESS_H

#include <cstdint>
#include <string>

/// What tells this run from others that work at the same time.
namespace running_process {

/// The computer's name, as it gives it.
std::string HostName();

/// Number of this process.
std::uint64_t Number();

/// Whether this computer has no process of that number.
bool IsGone(std::uint64_t number);

/// A number that nobody can guess; one made of the time where the system has none.
std::uint64_t RandomNumber();

}  // namespace running_process

#endif  // VELMARCON_SYSTEM_RUNNING_PROCESS_H
