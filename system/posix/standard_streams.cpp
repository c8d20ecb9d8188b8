// SPDX-License-Identifier: MIT
#include "system/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

namespace {

/// The lowest free descriptor, open to nothing; negative when there is none. Without devices the root folder
/// serves: nothing can be written to it either.
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
