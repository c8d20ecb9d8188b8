// SPDX-License-Identifier: MIT
#ifndef VELMARCON_PACKAGING_COMMAND_LINE_REMARKS_H
#define VELMARCON_PACKAGING_COMMAND_LINE_REMARKS_H

#include <span>
#include <string>
#include <vector>

#include "app/command_line.h"
#include "exif/lensdb.h"

/// The program ignores what it does not know, without a message. These are the remarks on it: one for each
/// option that it ignores or reads in part, one for all words that belong to no option, one for a black level
/// that is read as another number, one for -sd with a folder, and one for a path that cannot be used. Each is
/// one line without a newline, and says what to write instead. A correct command line has no remarks.
std::vector<std::string> RemarksOn(std::span<const Argument> arguments);

/// The option -l with its code; null if -l has no code.
const Argument* LensCodeIn(std::span<const Argument> arguments);

/// The remark on the code of -l, `code` as LensCodeIn found it in `arguments`: empty if `lenses` has the
/// code, or if `lenses` is empty, because the program then prints an error.
std::string RemarkOnLensCode(const Argument& code, std::span<const Argument> arguments, const lensdb& lenses);

#endif  // VELMARCON_PACKAGING_COMMAND_LINE_REMARKS_H
