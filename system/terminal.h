// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_TERMINAL_H
#define VELMARCON_SYSTEM_TERMINAL_H

/// Columns of the terminal that standard error goes to; 0 when that is none.
unsigned int TerminalWidth();

#endif  // VELMARCON_SYSTEM_TERMINAL_H
