// SPDX-License-Identifier: MIT
#ifndef VELMARCON_INPUT_INTERRUPTED_CALL_H
#define VELMARCON_INPUT_INTERRUPTED_CALL_H

#include <cerrno>

/// Makes a system call, which returns -1 when it fails, until no signal interrupts it. Returns what it
/// returned last. Not for close, which has done its work even so.
template <typename Call>
auto RepeatInterrupted(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR) {
        result = call();
    }
    return result;
}

#endif  // VELMARCON_INPUT_INTERRUPTED_CALL_H
