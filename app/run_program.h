// SPDX-License-Identifier: MIT
#ifndef VELMARCON_APP_RUN_PROGRAM_H
#define VELMARCON_APP_RUN_PROGRAM_H

#include <span>

/// The exit status of a run that ended for want of memory, apart from any image: EX_OSERR of sysexits.h, no
/// code of the error table.
constexpr int kOutOfMemory = 71;

/// The whole program: reads the options, finds the images and converts or repairs them. `arguments` is argv,
/// the program's name included. Prints to standard output. Returns the exit status.
int RunProgram(std::span<char* const> arguments);

#endif  // VELMARCON_APP_RUN_PROGRAM_H
