// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_COMPLETE_DNG_H
#define VELMARCON_BATCH_COMPLETE_DNG_H

#include <string>

/// The problem of a DNG that another program may have written anew.
constexpr const char* kOtherDng = "is not one that velmarcon wrote";

/// Why the file at `path` is no DNG that velmarcon wrote, to its last byte: "is not a DNG", "is not complete"
/// and so on; empty when it is one. Goes by what the file says of its raw image: where it begins, how long it
/// is, and that the file reaches to its end; of a pair, its size in pixels, too. So a file that was cut
/// anywhere is found out.
std::string ProblemOfDng(const std::string& path, bool is_pair);

#endif  // VELMARCON_BATCH_COMPLETE_DNG_H
