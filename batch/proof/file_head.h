// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PROOF_FILE_HEAD_H
#define VELMARCON_BATCH_PROOF_FILE_HEAD_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "system/input_file.h"

/// Bytes that hold all but the pictures of a DNG or a JPEG, as cameras and this program write them. Who finds
/// something missing there, reads on up to kLongestFile.
constexpr std::size_t kHeadSize = 128UL * 1024;

/// No file of a picture is as long.
constexpr std::size_t kLongestFile = 64UL * 1024 * 1024;

/// The first bytes of the plain file at `path`, `limit` at most; nothing when they cannot be read.
inline std::optional<std::vector<std::uint8_t>> ReadHead(const std::string& path, std::size_t limit) {
    InputFile file;
    if (!file.Open(path)) {
        return std::nullopt;
    }
    std::vector<std::uint8_t> bytes(
        static_cast<std::size_t>(file.size() < limit ? file.size() : std::uint64_t{limit}));
    return file.ReadStart(bytes) ? std::optional(std::move(bytes)) : std::nullopt;
}

#endif  // VELMARCON_BATCH_PROOF_FILE_HEAD_H
