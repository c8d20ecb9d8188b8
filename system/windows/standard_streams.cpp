// SPDX-License-Identifier: MIT
#include "system/standard_streams.h"

#include <fcntl.h>
#include <io.h>

namespace {

constexpr int kStandardError = 2;

}  // namespace

void FillMissingStandardStreams() {
    const auto open_nothing = [] { return ::_wopen(L"NUL", _O_RDWR); };
    int descriptor = open_nothing();
    while (descriptor >= 0 && descriptor <= kStandardError) {
        descriptor = open_nothing();
    }
    if (descriptor > kStandardError) {
        ::_close(descriptor);
    }
}

bool ErrorsGoToTerminal() {
    return ::_isatty(kStandardError) != 0;
}
