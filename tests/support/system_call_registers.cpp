// SPDX-License-Identifier: MIT
#include "tests/support/system_call_registers.h"

#include <elf.h>
#include <sys/ptrace.h>
#include <sys/uio.h>
#include <sys/user.h>

#include <array>

namespace support::registers {

namespace {

#if defined(__x86_64__)

using Registers = user_regs_struct;

auto& Argument(Registers& registers, std::size_t index) {
    const std::array<decltype(&Registers::rdi), 6> order = {&Registers::rdi, &Registers::rsi, &Registers::rdx,
                                                            &Registers::r10, &Registers::r8,  &Registers::r9};
    return registers.*order.at(index);
}

auto& Result(Registers& registers) {
    return registers.rax;
}

#elif defined(__aarch64__)

using Registers = user_regs_struct;

auto& Argument(Registers& registers, std::size_t index) {
    return registers.regs[index];
}

auto& Result(Registers& registers) {
    return registers.regs[0];
}

#endif

#if defined(__x86_64__) || defined(__aarch64__)

/// Reads the registers, lets `change` modify them, and writes them back.
template <typename Change>
bool ChangeRegisters(pid_t process, Change change) {
    Registers registers = {};
    iovec vector = {&registers, sizeof(registers)};
    if (::ptrace(PTRACE_GETREGSET, process, NT_PRSTATUS, &vector) != 0) {
        return false;
    }
    change(registers);
    return ::ptrace(PTRACE_SETREGSET, process, NT_PRSTATUS, &vector) == 0;
}

#endif

}  // namespace

bool SkipCall([[maybe_unused]] pid_t process) {
#if defined(__x86_64__)
    constexpr auto no_call = ~decltype(Registers::orig_rax){0};
    return ChangeRegisters(process, [](Registers& registers) { registers.orig_rax = no_call; });
#elif defined(__aarch64__)
    int no_call = -1;
    iovec vector = {&no_call, sizeof(no_call)};
    return ::ptrace(PTRACE_SETREGSET, process, NT_ARM_SYSTEM_CALL, &vector) == 0;
#else
    return false;
#endif
}

bool SetArgument([[maybe_unused]] pid_t process, [[maybe_unused]] std::size_t index,
                 [[maybe_unused]] std::uint64_t value) {
#if defined(__x86_64__) || defined(__aarch64__)
    return ChangeRegisters(process, [&](Registers& registers) { Argument(registers, index) = value; });
#else
    return false;
#endif
}

bool SetResult([[maybe_unused]] pid_t process, [[maybe_unused]] std::int64_t result) {
#if defined(__x86_64__) || defined(__aarch64__)
    return ChangeRegisters(
        process, [&](Registers& registers) { Result(registers) = static_cast<std::uint64_t>(result); });
#else
    return false;
#endif
}

}  // namespace support::registers
