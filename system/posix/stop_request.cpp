// SPDX-License-Identifier: MIT
#include "system/stop_request.h"

#include <csignal>
#include <initializer_list>

namespace stop_request {

namespace {

volatile std::sig_atomic_t first_signal = 0;  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

void Mark(int signal) {
    if (first_signal == 0) {
        first_signal = signal;
    }
}

}  // namespace

/// A pause ends early; reads and writes go on.
void Watch() {
    struct sigaction action = {};
    action.sa_handler = Mark;
    action.sa_flags = SA_RESTART;
    ::sigemptyset(&action.sa_mask);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        (void)::sigaction(signal, &action, nullptr);
    }
}

int Signal() {
    return first_signal;
}

const char* Name(int signal) {
    if (signal == SIGINT) {
        return "INT";
    }
    return signal == SIGHUP ? "HUP" : "TERM";
}

}  // namespace stop_request
