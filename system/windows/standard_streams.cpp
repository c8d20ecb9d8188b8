// SPDX-License-Identifier: MIT
#include "system/standard_streams.h"

#include <fcntl.h>
#include <io.h>

void FillMissingStandardStreams() {
    constexpr int standard_error = 2;
    const auto open_nothing = [] { return ::_wopen(L"NUL", _O_RDWR); };
    int descriptor = open_nothing();
    while (descriptor >= 0 && descriptor <= standard_error) {
        descriptor = open_nothing();
    }
    if (descriptor > standard_error) {
        ::_close(descriptor);
    }
}
