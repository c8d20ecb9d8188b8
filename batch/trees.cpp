// SPDX-License-Identifier: MIT
#include "batch/trees.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "batch/input_of_file.h"
#include "batch/picture.h"
#include "batch/shown.h"
#include "system/file_system.h"
#include "system/folder_listing.h"
#include "system/path_names.h"
#include "system/system_error.h"
#include "system/system_path.h"

namespace {

namespace fs = std::filesystem;

std::string FromSystem(const fs::path& path) {
    std::string text = system_path::FromSystem(path);
#if defined(_WIN32)
    std::ranges::replace(text, '\\', '/');
#endif
    return text;
}

std::string LastName(const std::string& folder) {
    return folder.substr(folder.rfind('/') + 1);
}

TreeError AddFolder(const std::string& folder, std::vector<Tree>& trees) {
    const std::string root = CanonicalFolder(folder);
    if (root.empty()) {
        return {true, Shown(folder) + " cannot be entered"};
    }
    for (const Tree& other : trees) {
        if (LiesIn(root, other.root) || LiesIn(other.root, root)) {
            return {true, Shown(root) + " and " + Shown(other.root) + " have pictures in common"};
        }
    }
    trees.push_back({root, root, {}});
    return {};
}

bool IsFileOfPicture(const std::string& path) {
    std::string extension = path_names::Extension(path);
    std::ranges::transform(extension, extension.begin(),
                           [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    constexpr std::array<std::string_view, 4> extensions = {"RAW", "JPG", "BIA", "DNG"};
    return std::ranges::find(extensions, extension) != extensions.end() && file_system::IsTaken(path);
}

/// Unless it lies in a folder that is searched anyway.
TreeError AddPicture(const std::string& file, std::vector<Tree>& trees) {
    const fs::path path = system_path::ToSystem(file);
    const std::string parent = FromSystem(path.parent_path());
    const std::string root = CanonicalFolder(parent.empty() ? "." : parent);
    if (root.empty()) {
        return {true, Shown(parent) + " cannot be entered"};
    }
    const std::string name = NameIn(InputOfFile(Join(root, FromSystem(path.filename()))));
    for (Tree& tree : trees) {
        if (tree.only.empty() && LiesIn(root, tree.root)) {
            return {};
        }
        if (!tree.only.empty() && tree.root == root) {
            if (std::ranges::find(tree.only, name) == tree.only.end()) {
                tree.only.push_back(name);
            }
            return {};
        }
    }
    trees.push_back({root, root, {name}});
    return {};
}

TreeError ResolveRoots(const BatchOptions& options, std::vector<Tree>& trees) {
    std::vector<std::string> files;
    for (const std::string& path : options.folders) {
        std::error_code unknown;
        if (fs::is_directory(system_path::ToSystem(path), unknown)) {
            if (TreeError error = AddFolder(path, trees); !error.text.empty()) {
                return error;
            }
        } else if (IsFileOfPicture(path)) {
            files.push_back(path);
        } else {
            return {true, Shown(path) + " is neither a folder nor a file of a picture"};
        }
    }
    for (const std::string& file : files) {
        if (TreeError error = AddPicture(file, trees); !error.text.empty()) {
            return error;
        }
    }
    return {};
}

/// Of an output folder that is not there, for a dry run, only the absolute path.
TreeError ResolveOutput(const BatchOptions& options, bool make, std::string& output) {
    std::error_code error;
    if (make) {
        fs::create_directories(system_path::ToSystem(options.output), error);
        std::error_code unknown;
        if (!fs::is_directory(system_path::ToSystem(options.output), unknown)) {
            const auto reason = error ? error : std::make_error_code(std::errc::not_a_directory);
            return {false,
                    "the output folder " + Shown(options.output) + " cannot be made: " + ErrorText(reason)};
        }
    }
    output = CanonicalFolder(options.output, error);
    if (output.empty() && make) {
        return {false, "the output folder cannot be entered: " + ErrorText(error)};
    }
    if (output.empty()) {
        output = FromSystem(fs::absolute(system_path::ToSystem(options.output), error));
    }
    return {};
}

/// One folder's tree goes right into the output folder; of several each gets a folder by its name.
TreeError PlaceOutputs(const std::string& output, std::vector<Tree>& trees) {
    if (trees.size() == 1) {
        trees.front().out = output;
        return {};
    }
    for (std::size_t i = 0; i < trees.size(); ++i) {
        const std::string name = LastName(trees[i].root);
        trees[i].out = Join(output, name);
        for (std::size_t other = 0; other < i; ++other) {
            if (trees[other].out == trees[i].out) {
                return {true,
                        "several folders are called " + Shown(name) +
                            ", and their DNGs would mix: call this once for each, with another --output"};
            }
        }
    }
    return {};
}

}  // namespace

std::string Join(const std::string& folder, const std::string& name) {
    return folder.ends_with('/') ? folder + name : folder + "/" + name;
}

bool LiesIn(const std::string& folder, const std::string& other) {
    return folder == other || folder.starts_with(other.ends_with('/') ? other : other + "/");
}

std::string CanonicalFolder(const std::string& folder, std::error_code& error) {
    const fs::path path = fs::canonical(system_path::ToSystem(folder), error);
    if (error) {
        return "";
    }
    std::string text = FromSystem(path);
    if (!FolderListing(text).IsOpen()) {
        error = system_error::Last();
        return "";
    }
    return text;
}

std::string CanonicalFolder(const std::string& folder) {
    std::error_code unknown;
    return CanonicalFolder(folder, unknown);
}

TreeError ResolveTrees(const BatchOptions& options, bool make_output, std::vector<Tree>& trees) {
    if (TreeError error = ResolveRoots(options, trees); !error.text.empty()) {
        return error;
    }
    if (options.output.empty()) {
        return {};
    }
    std::string output;
    if (TreeError error = ResolveOutput(options, make_output, output); !error.text.empty()) {
        return error;
    }
    TreeError error = PlaceOutputs(output, trees);
    for (const Tree& tree : trees) {
        std::error_code told_with_the_pictures;
        if (error.text.empty() && make_output) {
            fs::create_directories(system_path::ToSystem(tree.out), told_with_the_pictures);
        }
    }
    return error;
}
