// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_RETRY_ON_INTERRUPT_H
#define VELMARCON_SYSTEM_RETRY_ON_INTERRUPT_H

#include <cerrno>

/// Makes a system call, which returns -1 when it fails, until no signal interrupts it. Returns what it
/// returned last. Not for close, which has done its work even so.
template <typename Call>
auto RetryOnInterrupt(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR) {
        result = call();
    }
    return result;
}

#endif  // VELMARCON_SYSTEM_RETRY_ON_INTERRUPT_H
