// SPDX-License-Identifier: MIT
#include <system_error>

#include "exif/system_path.h"

namespace system_path {

bool IsPlainFile(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error);
}

}  // namespace system_path
