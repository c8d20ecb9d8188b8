// SPDX-License-Identifier: MIT
#include "packaging/kept_sensor_database.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>

#include "packaging/whole_copy.h"

namespace {

namespace fs = std::filesystem;

fs::path NumberedName(std::uint32_t number) {
    return std::string(kSensorDatabase) + "." + std::to_string(number);
}

/// The number in the name of a kept database; 0 for any other name.
std::uint32_t NumberIn(const std::string& name) {
    constexpr std::size_t most_digits = 9;
    const std::string begin = std::string(kSensorDatabase) + ".";
    if (!name.starts_with(begin) || name.size() - begin.size() > most_digits) {
        return 0;
    }
    std::uint32_t number = 0;
    std::from_chars(name.data() + begin.size(), name.data() + name.size(), number);
    return name == NumberedName(number) ? number : 0;
}

/// The highest number of a kept database; 0 when there is none.
std::uint32_t HighestNumber(const fs::path& folder, std::error_code& error) {
    std::uint32_t highest = 0;
    fs::directory_iterator entry(folder, error);
    while (!error && entry != fs::directory_iterator()) {
        highest = std::max(highest, NumberIn(entry->path().filename().string()));
        entry.increment(error);
    }
    return highest;
}

/// Whether both can be read, and hold the same bytes.
bool HoldTheSame(const fs::path& a, const fs::path& b) {
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

int KeepSensorDatabase(const std::filesystem::path& folder) {
    const fs::path database = folder / kSensorDatabase;
    std::error_code error;
    const fs::file_status status = fs::status(database, error);
    if (error && status.type() != fs::file_type::not_found) {
        return error.value();
    }
    if (!fs::is_regular_file(status)) {
        return 0;
    }
    std::uint32_t number = HighestNumber(folder, error);
    if (error) {
        return error.value();
    }
    if (number > 0 && HoldTheSame(database, folder / NumberedName(number))) {
        return 0;
    }
    // Another run may take the same number first.
    int failed = EEXIST;
    while (failed == EEXIST) {
        failed = CopyWhole(database, folder / NumberedName(++number));
    }
    return failed;
}
