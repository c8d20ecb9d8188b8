// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_RETRY_ON_INTERRUPT_H
#define VELMARCON_SYSTEM_RETRY_ON_INTERRUPT_H

#include <cerrno>

/// Repeats a system call that returns -1 on failure until no signal interrupts it. Returns its last result.
/// Not for close, which closes the file even if it is interrupted.
template <typename Call>
auto RetryOnInterrupt(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR) {
        result = call();
    }
    return result;
}

#endif  // VELMARCON_SYSTEM_RETRY_ON_INTERRUPT_H
