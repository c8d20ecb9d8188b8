// SPDX-License-Identifier: MIT
#include "system/terminal.h"

#include <windows.h>

unsigned int TerminalWidth() {
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    if (::GetConsoleScreenBufferInfo(::GetStdHandle(STD_ERROR_HANDLE), &info) == 0 || info.dwSize.X <= 0) {
        return 0;
    }
    return static_cast<unsigned int>(info.dwSize.X);
}
