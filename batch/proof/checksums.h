// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PROOF_CHECKSUMS_H
#define VELMARCON_BATCH_PROOF_CHECKSUMS_H

#include <map>
#include <string>

/// Check sums by file name, which names no folder: 64 digits "0" to "9" and "a" to "f" each.
using Checksums = std::map<std::string, std::string>;

/// The check sums in the file SHA256SUMS of `folder`, which ends in its separator or is empty, as
/// `sha256sum --check` finds them: a line it would call improperly formatted is passed over, of two lines for
/// one name the later counts. Both of its formats are read, that of --tag, too. Returns 0, also when there is
/// no file, or the system's error number.
[[nodiscard]] int ReadChecksums(const std::string& folder, Checksums& sums);

/// Writes the file as `sha256sum` prints it, in the order of the names, whole or not at all: an older one is
/// replaced. Returns 0 or the system's error number.
[[nodiscard]] int WriteChecksums(const std::string& folder, const Checksums& sums);

#endif  // VELMARCON_BATCH_PROOF_CHECKSUMS_H
