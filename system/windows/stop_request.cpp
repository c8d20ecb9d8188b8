// SPDX-License-Identifier: MIT
#include "system/stop_request.h"

#include <windows.h>

#include <atomic>
#include <csignal>

namespace stop_request {

namespace {

std::atomic<int> first_signal = 0;  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

/// Called in a thread of its own.
BOOL WINAPI Mark(DWORD event) {
    int none = 0;
    const bool is_key = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
    (void)first_signal.compare_exchange_strong(none, is_key ? SIGINT : SIGTERM);
    return TRUE;
}

}  // namespace

void Watch() {
    ::SetConsoleCtrlHandler(Mark, TRUE);
}

int Signal() {
    return first_signal;
}

const char* Name(int signal) {
    return signal == SIGINT ? "INT" : "TERM";
}

}  // namespace stop_request
