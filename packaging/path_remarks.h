// SPDX-License-Identifier: MIT
#ifndef VELMARCON_PACKAGING_PATH_REMARKS_H
#define VELMARCON_PACKAGING_PATH_REMARKS_H

#include <span>
#include <string>
#include <vector>

#include "app/command_line.h"

/// The errors about the input and the output folder name no path, and the usage text does not say that the
/// current folder holds no picture. These remarks do, and they name the JPEGs that are not found because
/// their extension is not in capital letters; paths that can be used get none. A path that may exist, but
/// cannot be examined, is left to the program.
std::vector<std::string> RemarksOnPaths(std::span<const Argument> arguments);

/// Whether an argument has more characters than its option, as in "-icard", and is not the option's full
/// name. Then the option's value is not the one that was meant.
bool HasMoreThanOption(const Argument& argument);

#endif  // VELMARCON_PACKAGING_PATH_REMARKS_H
