// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_SUPPORT_SYSTEM_CALL_REGISTERS_H
#define VELMARCON_TESTS_SUPPORT_SYSTEM_CALL_REGISTERS_H

#include <sys/types.h>

#include <cstddef>
#include <cstdint>

/// The registers of a traced process that is stopped at the entry or the exit of a system call. Each function
/// returns whether it succeeded; it always fails on machines whose registers are not known here.
namespace support::registers {

/// At the entry: skips the call. The result must be set at the exit.
[[nodiscard]] bool SkipCall(pid_t process);

/// At the entry: changes argument `index`, 0 to 5.
[[nodiscard]] bool SetArgument(pid_t process, std::size_t index, std::uint64_t value);

/// At the exit: changes the result of the call; a failure is -errno.
[[nodiscard]] bool SetResult(pid_t process, std::int64_t result);

}  // namespace support::registers

#endif  // VELMARCON_TESTS_SUPPORT_SYSTEM_CALL_REGISTERS_H
