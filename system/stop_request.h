// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_STOP_REQUEST_H
#define VELMARCON_SYSTEM_STOP_REQUEST_H

/// Ctrl-C, the closing of the terminal and the request to end, for programs that end in an orderly way.
namespace stop_request {

/// From now on such a signal only leaves its mark.
void Watch();

/// The number of the first signal that came; 0 when none has.
int Signal();

/// Its name without SIG: "INT", "TERM" or "HUP".
const char* Name(int signal);

}  // namespace stop_request

#endif  // VELMARCON_SYSTEM_STOP_REQUEST_H
