// SPDX-License-Identifier: MIT
#include "system/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

unsigned int TerminalWidth() {
    constexpr unsigned int usual = 80;
    if (::isatty(STDERR_FILENO) == 0) {
        return 0;
    }
    struct winsize size = {};
    const bool known = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : usual;
}
