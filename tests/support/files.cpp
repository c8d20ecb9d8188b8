// SPDX-License-Identifier: MIT
#include "tests/support/files.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

namespace support {

TempFolder::TempFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "velmarcon-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        std::abort();
    }
    path_ = name;
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

void WriteFile(const std::string& path, std::span<const std::uint8_t> bytes) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    file.close();
    ASSERT_TRUE(file.good()) << path;
}

void WriteFile(const std::string& path, std::string_view text) {
    WriteFile(path, std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
}

std::vector<std::uint8_t> ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    EXPECT_TRUE(file.is_open()) << path;
    const std::streamoff size = file.is_open() ? std::streamoff(file.tellg()) : 0;
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    file.seekg(0);
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size));
    return bytes;
}

std::string ReadText(const std::string& path) {
    const auto bytes = ReadFile(path);
    return {bytes.begin(), bytes.end()};
}

std::vector<std::string> Names(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
}

}  // namespace support
