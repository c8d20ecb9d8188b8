// SPDX-License-Identifier: MIT
#include "system/posix/write_signals.h"

#include <csignal>

void IgnoreWriteSignals() {
    (void)std::signal(SIGXFSZ, SIG_IGN);
    (void)std::signal(SIGPIPE, SIG_IGN);
}
