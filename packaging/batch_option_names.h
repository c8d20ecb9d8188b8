// SPDX-License-Identifier: MIT
#ifndef VELMARCON_PACKAGING_BATCH_OPTION_NAMES_H
#define VELMARCON_PACKAGING_BATCH_OPTION_NAMES_H

#include <array>
#include <string_view>

/// The options that velmarcon-batch has and velmarcon does not, neither under this name nor under a similar
/// one. A test compares them with what `velmarcon-batch --help` prints.
constexpr std::array<std::string_view, 20> kBatchOptionNames = {{
    "-j",          "--jobs",      "--hosts",          "--from0",  "--newest-first", "--fresh",
    "--rename",    "--keep-time", "--accept-damaged", "--anyway", "--no-verify",    "--verify",
    "--checksums", "-n",          "--dry-run",        "-q",       "--quiet",        "--json",
    "--notify",    "--state",
}};

#endif  // VELMARCON_PACKAGING_BATCH_OPTION_NAMES_H
