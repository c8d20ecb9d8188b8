// SPDX-License-Identifier: MIT
#include "batch/record_files.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <utility>

#include "batch/file_facts.h"
#include "system/file_state.h"
#include "system/folder_listing.h"
#include "system/system_path.h"

namespace {

std::string ReadFrom(const std::string& path, std::uint64_t offset) {
    std::ifstream file;
    std::string bytes;
    if (system_path::OpenPlainFile(path, file)) {
        return bytes;
    }
    file.seekg(static_cast<std::streamoff>(offset));
    std::array<char, 16384> piece = {};
    while (file.read(piece.data(), static_cast<std::streamsize>(piece.size())) || file.gcount() > 0) {
        bytes.append(piece.data(), static_cast<std::size_t>(file.gcount()));
    }
    return bytes;
}

}  // namespace

std::vector<Record> RecordFiles::TakeNew() {
    std::vector<Record> records;
    FolderListing files(folder_);
    if (!files.IsOpen()) {
        return records;
    }
    std::vector<std::string> names;
    while (auto name = files.NextFile()) {
        names.push_back(*std::move(name));
    }
    // By number: what was done first is told first, as far as it is one after the other.
    std::ranges::sort(names, {}, [](const std::string& name) { return std::pair(name.size(), name); });
    for (const std::string& name : names) {
        const std::string path = folder_ + "/" + name;
        std::uint64_t& read = read_[name];
        const auto state = StateAt(path);
        if (!state || static_cast<std::uint64_t>(state->size) <= read) {
            continue;
        }
        std::size_t used = 0;
        for (Record& record : RecordsIn(ReadFrom(path, read), used)) {
            records.push_back(std::move(record));
        }
        read += used;
    }
    return records;
}
