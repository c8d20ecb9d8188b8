// SPDX-License-Identifier: MIT
#include "batch/input_of_file.h"

#include <cstdint>

#include "app/input_discovery.h"
#include "batch/file_facts.h"
#include "batch/picture.h"
#include "system/file_system.h"
#include "system/path_names.h"

namespace {

bool IsCameraDngAt(const std::string& path) {
    const auto state = StateAt(path);
    return state && state->size == static_cast<std::int64_t>(kCameraDngSize);
}

}  // namespace

std::string InputOfFile(const std::string& path) {
    const std::string base = WithoutExtension(path);
    const std::string extension = path_names::Extension(path);
    const bool has_raw = file_system::IsTaken(base + ".RAW");
    if (extension == "DNG") {
        return has_raw && !IsCameraDngAt(path) ? base + ".RAW" : path;
    }
    if (extension != "JPG" && extension != "BIA") {
        return path;
    }
    if (has_raw) {
        return base + ".RAW";
    }
    return IsCameraDngAt(base + ".DNG") ? base + ".DNG" : path;
}
