// SPDX-License-Identifier: MIT
#include "system/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

namespace {

/// Opens the null device and returns its descriptor, the lowest free one; negative if that fails. Where there
/// are no devices, opens the root folder, which cannot be written to either.
int OpenNothing() {
    const int descriptor = ::open("/dev/null", O_RDWR);
    return descriptor >= 0 ? descriptor : ::open("/", O_RDONLY);
}

}  // namespace

void FillMissingStandardStreams() {
    int descriptor = OpenNothing();
    while (descriptor >= 0 && descriptor <= STDERR_FILENO) {
        descriptor = OpenNothing();
    }
    if (descriptor > STDERR_FILENO) {
        ::close(descriptor);
    }
}

bool ErrorsGoToTerminal() {
    return ::isatty(STDERR_FILENO) != 0;
}
