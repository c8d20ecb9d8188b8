// SPDX-License-Identifier: MIT
#ifndef VELMARCON_PACKAGING_COMMAND_LINE_REMARKS_H
#define VELMARCON_PACKAGING_COMMAND_LINE_REMARKS_H

#include <span>
#include <string>
#include <vector>

#include "app/command_line.h"
#include "exif/lensdb.h"

/// The program passes over what it does not know, without a message. These are the messages: one for each
/// option that it passes over or reads in part, one for all words that belong to no option, one for a black
/// level that is read as another number, one for -sd with a folder, and one for a path that cannot be used.
/// Each is one line without its end, and tells what to write instead. Of a command line that says what it
/// does there are none.
std::vector<std::string> RemarksOn(std::span<const Argument> arguments);

/// The code that -l is given; null when there is none.
const Argument* LensCodeIn(std::span<const Argument> arguments);

/// What there is to say of the code of -l, `code` as LensCodeIn has found it among `arguments`: empty when
/// `lenses` has it, and when `lenses` is empty, which the program tells itself.
std::string RemarkOnLensCode(const Argument& code, std::span<const Argument> arguments, const lensdb& lenses);

#endif  // VELMARCON_PACKAGING_COMMAND_LINE_REMARKS_H
