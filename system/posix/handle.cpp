// SPDX-License-Identifier: MIT
#include "system/handle.h"

#include <unistd.h>

#include <algorithm>

Handle::Handle(Native native) : native_(std::max(native, kNone)) {}

void Handle::Close() {
    if (IsOpen()) {
        ::close(Release());
    }
}
