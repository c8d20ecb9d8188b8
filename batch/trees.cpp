// SPDX-License-Identifier: MIT
#include "batch/trees.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include "batch/shown.h"
#include "system/file_system.h"
#include "system/folder_listing.h"
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

TreeError ResolveRoots(const BatchOptions& options, std::vector<Tree>& trees) {
    for (const std::string& folder : options.folders) {
        std::error_code unknown;
        if (!fs::is_directory(system_path::ToSystem(folder), unknown)) {
            return {true, Shown(folder) + " is no folder"};
        }
        const std::string root = CanonicalFolder(folder);
        if (root.empty()) {
            return {true, Shown(folder) + " cannot be entered"};
        }
        for (const Tree& other : trees) {
            if (LiesIn(root, other.root) || LiesIn(other.root, root)) {
                return {true, Shown(root) + " and " + Shown(other.root) + " have pictures in common"};
            }
        }
        trees.push_back({root, root});
    }
    return {};
}

/// Of an output folder that is not there, for a dry run, only the absolute path.
TreeError ResolveOutput(const BatchOptions& options, bool make, std::string& output) {
    std::error_code error;
    if (make) {
        fs::create_directories(system_path::ToSystem(options.output), error);
        if (!fs::is_directory(system_path::ToSystem(options.output), error)) {
            return {false, "the output folder cannot be made"};
        }
    }
    output = CanonicalFolder(options.output);
    if (output.empty() && make) {
        return {false, "the output folder cannot be entered: " + std::string(ErrorText(errno))};
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

std::string CanonicalFolder(const std::string& folder) {
    std::error_code error;
    const fs::path path = fs::canonical(system_path::ToSystem(folder), error);
    if (error) {
        errno = error.default_error_condition().value();
        return "";
    }
    std::string text = FromSystem(path);
    return FolderListing(text).IsOpen() ? text : "";
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
    return PlaceOutputs(output, trees);
}
