// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_SUPPORT_SYSTEM_CALL_REGISTERS_H
#define VELMARCON_TESTS_SUPPORT_SYSTEM_CALL_REGISTERS_H

#include <sys/types.h>

#include <cstddef>
#include <cstdint>

/// The registers of a traced process that stands at the entry or the exit of a system call. Each function
/// returns whether that could be done; never on machines whose registers are not known here.
namespace support::registers {

/// At the entry: no call is made. Its result has to be set at the exit.
[[nodiscard]] bool SkipCall(pid_t process);

/// At the entry: another value for argument `index`, 0 to 5.
[[nodiscard]] bool SetArgument(pid_t process, std::size_t index, std::uint64_t value);

/// At the exit: what the call returns; -errno stands for a failure.
[[nodiscard]] bool SetResult(pid_t process, std::int64_t result);

}  // namespace support::registers

#endif  // VELMARCON_TESTS_SUPPORT_SYSTEM_CALL_REGISTERS_H
