// SPDX-License-Identifier: MIT
#ifndef VELMARCON_APP_SANDBOX_H
#define VELMARCON_APP_SANDBOX_H

#include "app/reach.h"

/// From here on the system refuses the process every file that is not in its reach, for good: a damaged file
/// that found a bug could do no harm elsewhere. Files that are open stay so. Returns whether it does: Linux
/// with Landlock can; without it nothing changes.
bool EnterSandbox(const Reach& reach);

#endif  // VELMARCON_APP_SANDBOX_H
