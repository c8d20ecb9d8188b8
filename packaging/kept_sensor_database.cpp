// SPDX-License-Identifier: MIT
#include "packaging/kept_sensor_database.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "packaging/whole_copy.h"
#include "system/backups.h"

namespace {

namespace fs = std::filesystem;

/// Whether both can be read, and hold the same bytes.
bool HoldTheSame(const std::string& a, const std::string& b) {
    std::error_code error;
    if (!fs::is_regular_file(b, error) || fs::file_size(a, error) != fs::file_size(b, error) || error) {
        return false;
    }
    std::ifstream stream_a(a, std::ios::binary);
    std::ifstream stream_b(b, std::ios::binary);
    using Bytes = std::istreambuf_iterator<char>;
    return stream_a.is_open() && stream_b.is_open() &&
           std::equal(Bytes(stream_a), Bytes(), Bytes(stream_b), Bytes());
}

}  // namespace

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
        .is_in = [&](const std::string& copy) { return HoldTheSame(path, copy); },
        .write_to = [&](const std::string& copy) { return CopyWhole(path, copy, CopyAccess::kAsSource); }};
    std::string kept;
    return backups::Make(path, highest, content, kept);
}
