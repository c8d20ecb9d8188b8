// SPDX-License-Identifier: MIT
#include "fuzz/scratch_folder.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "fuzz/require.h"

ScratchFolder::ScratchFolder() {
    path_ = (std::filesystem::temp_directory_path() / "velmarcon-fuzz-XXXXXX").string();
    Require(::mkdtemp(path_.data()) != nullptr, "a scratch folder can be made");
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

void ScratchFolder::Write(const std::string& name, std::span<const std::uint8_t> bytes) const {
    Remove(name);
    std::ofstream file(prefix() + name, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    file.close();
    Require(file.good(), "a scratch file can be written");
}

void ScratchFolder::Write(const std::string& name, std::string_view text) const {
    Write(name, std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
}

std::vector<std::uint8_t> ScratchFolder::Read(const std::string& name) const {
    std::ifstream file(prefix() + name, std::ios::binary | std::ios::ate);
    Require(file.is_open(), "a file that should have been written is there");
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(std::streamoff(file.tellg())));
    file.seekg(0);
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    Require(file.good(), "a scratch file can be read");
    return bytes;
}

void ScratchFolder::Remove(const std::string& name) const {
    std::error_code ignored;
    std::filesystem::remove(prefix() + name, ignored);
}

std::vector<std::string> ScratchFolder::Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
        names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
}
