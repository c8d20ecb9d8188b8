// SPDX-License-Identifier: MIT
#include "packaging/kept_sensor_database.h"

#include <cstdint>
#include <filesystem>
#include <string>

#include "packaging/whole_copy.h"
#include "system/backups.h"
#include "system/same_bytes.h"

namespace fs = std::filesystem;

std::error_code KeepSensorDatabase(const std::string& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (error && status.type() != fs::file_type::not_found) {
        return error;
    }
    if (!fs::is_regular_file(status)) {
        return {};
    }
    const std::uint32_t highest = backups::HighestNumber(path, error);
    if (error) {
        return error;
    }
    const backups::Content content = {
        .is_in = [&](const std::string& copy) { return HaveSameBytes(path, copy); },
        .write_to = [&](const std::string& copy) { return CopyWhole(path, copy, CopyAccess::kAsSource); }};
    std::string kept;
    return backups::Make(path, highest, content, kept);
}
