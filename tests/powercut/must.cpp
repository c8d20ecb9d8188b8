// SPDX-License-Identifier: MIT
#include "tests/powercut/must.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>

namespace powercut {

void Must(bool worked, std::string_view what) {
    if (!worked) {
        std::cout << what << ": " << std::strerror(errno) << std::endl;
        std::_Exit(EXIT_FAILURE);
    }
}

}  // namespace powercut
