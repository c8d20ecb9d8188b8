// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PROOF_TAG_NAME_H
#define VELMARCON_BATCH_PROOF_TAG_NAME_H

#include <cstdint>
#include <string>

/// The name of `tag` as docs/dng-format.md has it; its number for any other tag.
std::string TagName(std::uint16_t tag);

#endif  // VELMARCON_BATCH_PROOF_TAG_NAME_H
