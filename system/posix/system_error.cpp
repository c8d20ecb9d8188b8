// SPDX-License-Identifier: MIT
#include "system/system_error.h"

#include <cerrno>
#include <cstring>

namespace system_error {

std::error_code Last() {
    return {errno != 0 ? errno : EIO, std::generic_category()};
}

const char* Text(std::error_code error) {
    return std::strerror(error.default_error_condition().value());
}

}  // namespace system_error
