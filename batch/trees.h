// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_TREES_H
#define VELMARCON_BATCH_TREES_H

#include <string>
#include <system_error>
#include <vector>

#include "batch/batch_options.h"

/// A folder that is searched, and the one in which its tree is mirrored. Both are absolute, without links,
/// "." and "..", and end in no separator unless that is all.
struct Tree {
    std::string root;
    std::string out;
    std::vector<std::string> only;  ///< names of the pictures in it that were asked for; empty: all are
};

/// Why there are no trees.
struct TreeError {
    bool is_usage = true;  ///< or else the system is to blame
    std::string text;      ///< empty: none
};

/// Resolves the folders of a run, and the pictures that are named one by one, by any of their files. With
/// `make_output`, the output folder is made unless it is there.
[[nodiscard]] TreeError ResolveTrees(const BatchOptions& options, bool make_output, std::vector<Tree>& trees);

/// `folder` and `name` as one path.
std::string Join(const std::string& folder, const std::string& name);

/// Whether `folder` is `other` or lies below it; both as in Tree.
bool LiesIn(const std::string& folder, const std::string& other);

/// The path of what is there, as in Tree; empty when it cannot be entered.
std::string CanonicalFolder(const std::string& folder, std::error_code& error);
std::string CanonicalFolder(const std::string& folder);

#endif  // VELMARCON_BATCH_TREES_H
