// SPDX-License-Identifier: MIT
#include "calibrate/database_file.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <filesystem>

#include "system/file_system.h"
#include "system/folder_listing.h"
#include "system/ini_file.h"
#include "system/input_file.h"
#include "system/replacement_file.h"

namespace database_file {

namespace {

std::string NumberedName(const std::string& path, std::uint32_t number) {
    return path + "." + std::to_string(number);
}

std::string FileNameOf(const std::string& path) {
    return path.substr(path.find_last_of("\\/") + 1);
}

/// The number in the name of a kept copy of the file `name`; 0 for any other name.
std::uint32_t NumberIn(const std::string& copy, const std::string& name) {
    constexpr std::size_t most_digits = 9;
    const std::string begin = name + ".";
    if (!copy.starts_with(begin) || copy.size() - begin.size() > most_digits) {
        return 0;
    }
    std::uint32_t number = 0;
    std::from_chars(copy.data() + begin.size(), copy.data() + copy.size(), number);
    return copy == NumberedName(name, number) ? number : 0;
}

/// The highest number of a kept copy; 0 when there is none.
std::uint32_t HighestNumber(const std::string& path) {
    const std::string folder = file_system::FolderOf(path);
    const std::string name = FileNameOf(path);
    FolderListing listing(folder.empty() ? "." : folder);
    std::uint32_t highest = 0;
    while (listing.IsOpen()) {
        const auto file = listing.NextFile();
        if (!file) {
            break;
        }
        highest = std::max(highest, NumberIn(*file, name));
    }
    return highest;
}

/// Returns 0 or the system's error number.
int WriteWhole(const std::string& path, const std::string& text, ReplacementFile::Existing existing) {
    ReplacementFile file;
    if (const int error = file.Open(path, existing); error != 0) {
        return error;
    }
    file.Write(text);
    return file.Commit(text.size());
}

/// Keeps the text under the next number. Returns 0 or the system's error number.
int Keep(const std::string& path, const std::string& text, std::string& kept) {
    std::uint32_t number = HighestNumber(path);
    std::string newest;
    if (number > 0 && Read(NumberedName(path, number), newest).empty() && newest == text) {
        return 0;
    }
    // Another run may take the same number first.
    int error = EEXIST;
    while (error == EEXIST) {
        kept = NumberedName(path, ++number);
        error = WriteWhole(kept, text, ReplacementFile::Existing::kKeep);
    }
    return error;
}

}  // namespace

std::string Read(const std::string& path, std::string& text) {
    text.clear();
    auto kind = file_system::Kind::kNothing;
    if (const int error = file_system::KindOf(path, kind); error != 0) {
        return file_system::ErrorText(error);
    }
    if (kind == file_system::Kind::kNothing) {
        return "";
    }
    InputFile file;
    if (kind != file_system::Kind::kPlainFile || !file.Open(path)) {
        return kind == file_system::Kind::kPlainFile ? "it cannot be opened" : "it is not a regular file";
    }
    if (file.size() > ini_file::kLongestFile) {
        return "it is too long";
    }
    text.resize(static_cast<std::size_t>(file.size()));
    if (!file.ReadStart({reinterpret_cast<std::uint8_t*>(text.data()), text.size()})) {
        return "it cannot be read";
    }
    return "";
}

std::string Replace(const std::string& path, const std::string& old_text, const std::string& new_text,
                    std::string& kept) {
    kept.clear();
    if (old_text == new_text) {
        return "";
    }
    if (!old_text.empty()) {
        std::string copy;
        if (const int error = Keep(path, old_text, copy); error != 0) {
            return "it cannot be backed up as " + copy + ": " + file_system::ErrorText(error);
        }
        kept = copy;
    }
    const int error = WriteWhole(path, new_text, ReplacementFile::Existing::kReplaceTarget);
    return error == 0 ? "" : file_system::ErrorText(error);
}

}  // namespace database_file
