// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_PROGRESS_H
#define VELMARCON_CALIBRATE_PROGRESS_H

#include <string>

/// A line that tells how far a long work is, on standard error, when that is a terminal.
namespace progress {

/// Shows `text` in place of what was shown before.
void Show(const std::string& text);

/// Takes it away.
void Clear();

}  // namespace progress

#endif  // VELMARCON_CALIBRATE_PROGRESS_H
