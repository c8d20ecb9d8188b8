// SPDX-License-Identifier: MIT
#include "calibrate/database_file.h"

#include <cstdint>
#include <system_error>

#include "system/backups.h"
#include "system/file_system.h"
#include "system/ini_file.h"
#include "system/input_file.h"
#include "system/replacement_file.h"
#include "system/system_error.h"

namespace database_file {

namespace {

std::error_code WriteDatabase(const std::string& path, const std::string& text) {
    ReplacementFile file;
    if (const std::error_code error = file.Open(path, ReplacementFile::Existing::kReplaceTarget)) {
        return error;
    }
    file.Write(text);
    return file.Commit(text.size());
}

/// On the disk before the file that it is a backup of is replaced.
std::error_code WriteBackup(const std::string& database, const std::string& text, const std::string& backup) {
    ReplacementFile file;
    if (const std::error_code error = file.OpenCopy(backup, database)) {
        return error;
    }
    file.Write(text);
    return file.CommitToDisk(text.size());
}

/// As Read, but does not follow a link.
std::string ReadPlain(const std::string& path, std::string& text) {
    text.clear();
    auto kind = file_system::Kind::kNothing;
    if (const std::error_code error = file_system::KindOf(path, kind)) {
        return system_error::Text(error);
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

/// Keeps the text under the next number. A backup that is a link does not count: it may lead to the database
/// itself.
std::error_code Keep(const std::string& path, const std::string& text, std::string& kept) {
    const backups::Content content = {
        .is_in =
            [&](const std::string& copy) {
                std::string held;
                return ReadPlain(copy, held).empty() && held == text;
            },
        .write_to = [&](const std::string& copy) { return WriteBackup(path, text, copy); }};
    std::error_code unlisted;  // then the first free number is taken
    const std::uint32_t highest = backups::HighestNumber(path, unlisted);
    return backups::Make(path, highest, content, kept);
}

}  // namespace

std::string Read(const std::string& path, std::string& text) {
    std::string target;
    if (const std::error_code error = file_system::FollowLinks(path, target)) {
        text.clear();
        return system_error::Text(error);
    }
    return ReadPlain(target, text);
}

std::string Replace(const std::string& path, const std::string& old_text, const std::string& new_text,
                    std::string& kept) {
    kept.clear();
    if (old_text == new_text) {
        return "";
    }
    if (!old_text.empty()) {
        std::string copy;
        if (const std::error_code error = Keep(path, old_text, copy)) {
            return "it cannot be backed up as " + copy + ": " + system_error::Text(error);
        }
        kept = copy;
    }
    const std::error_code error = WriteDatabase(path, new_text);
    return error ? system_error::Text(error) : "";
}

}  // namespace database_file
