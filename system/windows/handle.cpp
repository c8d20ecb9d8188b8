// SPDX-License-Identifier: MIT
#include "system/handle.h"

#include <windows.h>

/// On failure, some calls of Windows return nullptr and others INVALID_HANDLE_VALUE.
Handle::Handle(Native native) : native_(native == INVALID_HANDLE_VALUE ? kNone : native) {}

void Handle::Close() {
    if (IsOpen()) {
        ::CloseHandle(Release());
    }
}
