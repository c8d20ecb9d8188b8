// SPDX-License-Identifier: MIT
#ifndef VELMARCON_PACKAGING_PATH_REMARKS_H
#define VELMARCON_PACKAGING_PATH_REMARKS_H

#include <span>
#include <string>
#include <vector>

#include "app/command_line.h"

/// The errors on the input and the output folder name no path, and the usage text does not say that the
/// current folder holds no picture. These are the lines that do, none for paths that can be used. A path that
/// may be there, but cannot be looked at, is left to the program.
std::vector<std::string> RemarksOnPaths(std::span<const Argument> arguments);

/// Whether more stands in the argument of an option than the option, and it is not the option's name in full:
/// "-icard". Then the value of the option is not what was meant for it.
bool HasMoreThanOption(const Argument& argument);

#endif  // VELMARCON_PACKAGING_PATH_REMARKS_H
