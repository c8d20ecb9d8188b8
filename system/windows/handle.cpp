// SPDX-License-Identifier: MIT
#include "system/handle.h"

#include <windows.h>

/// Some calls of Windows return one value when they fail, and some the other.
Handle::Handle(Native native) : native_(native == INVALID_HANDLE_VALUE ? kNone : native) {}

void Handle::Close() {
    if (IsOpen()) {
        ::CloseHandle(Release());
    }
}
