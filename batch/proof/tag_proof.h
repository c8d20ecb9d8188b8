// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PROOF_TAG_PROOF_H
#define VELMARCON_BATCH_PROOF_TAG_PROOF_H

#include <cstdint>
#include <span>
#include <string>

#include "base/byte_view.h"
#include "batch/proof/expected_tags.h"

/// The images in the bytes of a DNG.
struct WrittenImages {
    std::span<const std::uint8_t> preview;  ///< empty without one
    std::span<const std::uint8_t> raw;
};

/// Compares the tags of a DNG, all of whose bytes are `dng`, with `expected`, type, count and every byte of
/// the value; a DNG must not have others, and must end where its raw image does. Returns what differs, such
/// as "tag Make differs"; or an empty text, and finds the images, which have the lengths that are expected.
std::string TagDifference(const ExpectedTags& expected, ByteView dng, WrittenImages& images);

#endif  // VELMARCON_BATCH_PROOF_TAG_PROOF_H
