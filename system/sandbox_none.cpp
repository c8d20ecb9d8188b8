// SPDX-License-Identifier: MIT
// For systems without Landlock, and for builds with tools that open files of
// their own, such as sanitizers (VELMARCON_SANDBOX=OFF).
#include "system/sandbox.h"

bool EnterSandbox(const Reach& /*reach*/) {
    return false;
}
