// SPDX-License-Identifier: MIT
#include "batch/picture_search.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <optional>
#include <set>
#include <system_error>
#include <unordered_map>
#include <utility>

#include "batch/dng_kind.h"
#include "batch/file_facts.h"
#include "batch/input_of_file.h"
#include "batch/shown.h"
#include "system/file_state.h"
#include "system/file_system.h"
#include "system/path_names.h"
#include "system/system_path.h"

namespace {

namespace fs = std::filesystem;

bool IsUpperCase(const std::string& text) {
    return std::ranges::none_of(text, [](unsigned char c) { return c >= 'a' && c <= 'z'; });
}

std::string UpperCase(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

/// Folders with what was deleted, or with previews of a NAS, under the names of pictures.
bool IsOfSystem(const std::string& folder) {
    return folder.starts_with(".Trash-") || folder == ".Trashes" || folder == "@eaDir";
}

/// The JPEGs of one folder that have neither a RAW file nor a DNG. The camera also takes pictures as JPEGs
/// only.
class JpegsAlone {
  public:
    void Add(const std::string& name) {
        const std::string extension = UpperCase(path_names::Extension(name));
        const bool is_jpeg = extension == "JPG";
        if (NameIn(name).starts_with("._") || (!is_jpeg && extension != "RAW" && extension != "DNG")) {
            return;
        }
        has_raw_files_ = has_raw_files_ || extension == "RAW";
        (is_jpeg ? jpegs_ : others_).emplace(WithoutExtension(name), name);
    }

    /// None where there is no RAW file at all.
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const auto& [base, name] : jpegs_) {
            if (has_raw_files_ && !others_.contains(base)) {
                names.push_back(name);
            }
        }
        return names;
    }

  private:
    std::unordered_map<std::string, std::string> jpegs_;  ///< names by what stands before their extension
    std::unordered_map<std::string, std::string> others_;
    bool has_raw_files_ = false;
};

/// Walks one tree.
class Walk {
  public:
    Walk(std::uint32_t number, std::span<const Tree> trees, FoundPictures& found)
        : number_(number), root_(trees[number].root), only_(trees[number].only), found_(found) {
        for (const Tree& tree : trees) {
            const auto state =
                tree.out != root_ && LiesIn(tree.out, root_) ? StateAt(tree.out) : std::nullopt;
            if (state) {
                excluded_.emplace_back(tree.out, *state);
            }
        }
    }

    void Run() {
        if (!only_.empty()) {
            LookAtNamed();
            return;
        }
        std::vector<std::string> folders = {""};
        while (!folders.empty()) {
            const std::string folder = std::move(folders.back());
            folders.pop_back();
            if (!IsExcluded(folder)) {
                List(folder, folders);
            }
        }
    }

  private:
    bool IsExcluded(const std::string& folder) {
        if (excluded_.empty() || folder.empty()) {
            return false;
        }
        const auto state = StateAt(Join(root_, folder));
        return state && std::ranges::any_of(excluded_, [&](const auto& excluded) {
                   const bool same =
                       state->device == excluded.second.device && state->inode == excluded.second.inode;
                   if (same) {
                       found_.excluded.push_back(excluded.first);
                   }
                   return same;
               });
    }

    /// `folder` is empty, or ends in a separator.
    void List(const std::string& folder, std::vector<std::string>& folders) {
        const std::string path = folder.empty() ? root_ : Join(root_, folder.substr(0, folder.size() - 1));
        JpegsAlone jpegs;
        std::error_code error;
        for (fs::directory_iterator entry(system_path::ToSystem(path), error);
             !error && entry != fs::directory_iterator(); entry.increment(error)) {
            const std::string name = folder + system_path::FromSystem(entry->path().filename());
            std::error_code unknown;
            const fs::file_type type = entry->symlink_status(unknown).type();
            if (type == fs::file_type::directory && IsOfSystem(NameIn(name))) {
                continue;
            }
            if (type == fs::file_type::directory) {
                folders.push_back(name + "/");
            } else {
                LookAt(name, type == fs::file_type::symlink);
                jpegs.Add(name);
            }
        }
        for (const std::string& name : jpegs.Names()) {
            found_.jpegs.push_back(Join(root_, name));
        }
        if (error) {
            found_.unread.push_back(path + ": " + ErrorText(error));
        }
    }

    void LookAtNamed() {
        const auto number_told = [&] {
            return found_.pictures.size() + found_.small.size() + found_.cut.size() +
                   found_.of_changed_length.size();
        };
        for (const std::string& name : only_) {
            const std::size_t before = number_told();
            if (file_system::IsTaken(Join(root_, name))) {
                LookAt(name, true);
            }
            if (number_told() == before) {
                found_.none.push_back(Join(root_, name));
            }
        }
    }

    void LookAt(const std::string& name, bool is_link) {
        const std::string extension = path_names::Extension(name);
        const std::string upper = extension.size() == 3 ? UpperCase(extension) : "";
        if (upper != "RAW" && upper != "DNG") {
            return;
        }
        if (NameIn(name).starts_with("._")) {
            ++found_.of_macos;
            return;
        }
        const std::string path = Join(root_, name);
        std::error_code unknown;
        if (is_link && fs::is_directory(system_path::ToSystem(path), unknown)) {
            return;
        }
        const DngKind kind = upper == "RAW" ? DngKind::kCameras : KindOfDng(path);
        const bool is_cameras = kind == DngKind::kCameras || kind == DngKind::kOfChangedLength;
        if (!IsUpperCase(extension)) {
            if (is_cameras) {
                found_.small.push_back(path);
            }
        } else if (kind == DngKind::kCameras) {
            found_.pictures.push_back({number_, name});
        } else if (kind == DngKind::kOfChangedLength) {
            found_.of_changed_length.push_back(path);
        } else if (kind == DngKind::kCut) {
            found_.cut.push_back(path);
        }
    }

    std::uint32_t number_;
    std::string root_;
    const std::vector<std::string>& only_;
    FoundPictures& found_;
    std::vector<std::pair<std::string, FileState>> excluded_;
};

/// `path` with the links of its folder followed; as it is if there is no such folder.
std::string InCanonicalFolder(const std::string& path) {
    const std::string folder = FolderIn(path);
    const std::string canonical = CanonicalFolder(folder.empty() ? "." : folder);
    return canonical.empty() ? path : Join(canonical, NameIn(path));
}

}  // namespace

FoundPictures FindPictures(std::span<const Tree> trees) {
    FoundPictures found;
    for (std::uint32_t number = 0; number < trees.size(); ++number) {
        const auto before = static_cast<std::ptrdiff_t>(found.pictures.size());
        Walk(number, trees, found).Run();
        std::ranges::sort(found.pictures.begin() + before, found.pictures.end(), {}, &Picture::name);
    }
    std::ranges::sort(found.small);
    std::ranges::sort(found.jpegs);
    std::ranges::sort(found.cut);
    std::ranges::sort(found.of_changed_length);
    return found;
}

std::vector<std::string> KeepListed(const std::string& list, std::span<const Tree> trees,
                                    FoundPictures& found) {
    // The files in the list, by the input of their picture.
    std::unordered_multimap<std::string, std::string> missing;
    for (std::size_t begin = 0; begin < list.size();) {
        const std::size_t end = std::min(list.find('\0', begin), list.size());
        const std::string file = InCanonicalFolder(list.substr(begin, end - begin));
        missing.emplace(InputOfFile(file), file);
        begin = end + 1;
    }
    std::erase_if(found.pictures,
                  [&](const Picture& picture) { return missing.erase(InputOf(picture, trees)) == 0; });
    std::set<std::string> files;
    for (const auto& [input, file] : missing) {
        files.insert(file);
    }
    return {files.begin(), files.end()};
}

void SortNewestFirst(std::span<const Tree> trees, std::vector<Picture>& pictures) {
    std::vector<std::pair<std::int64_t, Picture>> dated;
    dated.reserve(pictures.size());
    for (Picture& picture : pictures) {
        const auto state = StateAt(InputOf(picture, trees));
        dated.emplace_back(state ? state->modified_seconds : 0, std::move(picture));
    }
    std::ranges::stable_sort(dated, std::ranges::greater(), [](const auto& entry) { return entry.first; });
    pictures.clear();
    for (auto& entry : dated) {
        pictures.push_back(std::move(entry.second));
    }
}
