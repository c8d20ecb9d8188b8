// SPDX-License-Identifier: MIT
#ifndef VELMARCON_APP_RUN_PROGRAM_H
#define VELMARCON_APP_RUN_PROGRAM_H

#include <span>

#include "app/reach.h"

/// The exit status of a run that ran out of memory outside of any image: EX_OSERR of sysexits.h, not a code
/// of the error table.
constexpr int kOutOfMemory = 71;

/// Confines the process to a run's reach; see EnterSandbox.
using Confinement = bool (*)(const Reach& reach);

/// The whole program: reads the options, finds the images and converts or repairs them. `arguments` is argv,
/// including the program's name. `confine`, unless null, is called after the options are read and before the
/// first image. Prints to standard output. Returns the exit status.
[[nodiscard]] int RunProgram(std::span<char* const> arguments, Confinement confine = nullptr);

#endif  // VELMARCON_APP_RUN_PROGRAM_H
