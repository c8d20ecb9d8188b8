// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_EXIF_PARSE_BLOCK_H
#define VELMARCON_TESTS_EXIF_PARSE_BLOCK_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "exif/exif_info.h"

/// Parses the payload of an APP1 segment into `exif`; returns the parser's result.
inline int ParseSegment(const std::vector<std::uint8_t>& payload, EXIFInfo& exif) {
    return exif.parseFromEXIFSegment(payload.data(), static_cast<unsigned int>(payload.size()));
}

/// Parses a whole JPEG file into `exif`; returns the parser's result.
inline int ParseJpeg(const std::vector<std::uint8_t>& jpeg, EXIFInfo& exif) {
    return exif.parseFrom(jpeg.data(), static_cast<unsigned int>(jpeg.size()));
}

/// The first `size` bytes of `bytes`, padded with zeros if there are fewer. They have memory of their own, so
/// that reading past the end is detected.
inline std::vector<std::uint8_t> Resized(const std::vector<std::uint8_t>& bytes, std::size_t size) {
    std::vector<std::uint8_t> resized(size);
    for (std::size_t i = 0; i < size && i < bytes.size(); ++i) {
        resized[i] = bytes[i];
    }
    return resized;
}

#endif  // VELMARCON_TESTS_EXIF_PARSE_BLOCK_H
