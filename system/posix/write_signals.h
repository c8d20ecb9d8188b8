// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_POSIX_WRITE_SIGNALS_H
#define VELMARCON_SYSTEM_POSIX_WRITE_SIGNALS_H

/// From now on, a write that fails because a file may not grow or nobody reads the output any more is an
/// ordinary error and does not kill the program half-way through a card. Windows has no such signals.
void IgnoreWriteSignals();

#endif  // VELMARCON_SYSTEM_POSIX_WRITE_SIGNALS_H
