// SPDX-License-Identifier: MIT
#include "batch/output_names.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <system_error>
#include <utility>
#include <vector>

#include "batch/existing_folder.h"
#include "system/file_system.h"
#include "system/part_files.h"
#include "system/system_path.h"

namespace {

namespace fs = std::filesystem;

/// A name without what a file system may ignore: case, and all that is not ASCII.
std::string Folded(const std::string& name) {
    std::string folded;
    for (const char c : name) {
        const bool is_ascii = static_cast<unsigned char>(c) < 0x80;
        const bool is_capital = c >= 'A' && c <= 'Z';
        if (is_ascii) {
            folded += is_capital ? static_cast<char>(c - 'A' + 'a') : c;
        } else if (!folded.ends_with('\x7F')) {
            folded += '\x7F';
        }
    }
    return folded;
}

std::vector<std::string> NamesOf(const std::string& path) {
    std::vector<std::string> names;
    for (std::size_t begin = 0; begin <= path.size();) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        names.push_back(path.substr(begin, end - begin));
        begin = end + 1;
    }
    return names;
}

/// Whether both names are one to the file system of `folder`: it is asked, with a folder that is removed
/// again.
bool AreOneName(const std::string& folder, const std::string& a, const std::string& b) {
    std::error_code error;
    const std::string place = ExistingFolder(folder) + "/" + part_files::NewName();
    fs::create_directory(system_path::ToSystem(place), error);
    fs::create_directory(system_path::ToSystem(place + "/" + a), error);
    const bool one = !error && file_system::IsTaken(place + "/" + b);
    fs::remove_all(system_path::ToSystem(place), error);
    return one;
}

/// Whether two different paths lead to one file.
bool AreOnePath(const std::string& out, const std::string& a, const std::string& b) {
    const std::vector<std::string> names_a = NamesOf(a);
    const std::vector<std::string> names_b = NamesOf(b);
    if (names_a.size() != names_b.size()) {
        return false;
    }
    for (std::size_t i = 0; i < names_a.size(); ++i) {
        if (names_a[i] != names_b[i] && !AreOneName(out, names_a[i], names_b[i])) {
            return false;
        }
    }
    return true;
}

}  // namespace

std::string ProblemOfNames(std::span<const Tree> trees, std::span<const Picture> pictures) {
    std::map<std::pair<std::uint32_t, std::string>, const Picture*> seen;
    for (const Picture& picture : pictures) {
        const std::string base = WithoutExtension(picture.name);
        const auto [other, is_new] = seen.try_emplace({picture.tree, Folded(base)}, &picture);
        const std::string other_base = WithoutExtension(other->second->name);
        if (!is_new && other_base != base && AreOnePath(trees[picture.tree].out, other_base, base)) {
            return InputOf(*other->second, trees) + " and " + InputOf(picture, trees);
        }
    }
    return "";
}
