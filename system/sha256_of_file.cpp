// SPDX-License-Identifier: MIT
#include "system/input_file.h"
#include "system/sha256.h"

std::optional<std::string> Sha256OfFile(const std::string& path) {
    InputFile file;
    if (!file.Open(path)) {
        return std::nullopt;
    }
    Sha256 sum;
    const bool is_read = file.ReadPieces([&](std::span<const char> piece) {
        sum.Add({reinterpret_cast<const std::uint8_t*>(piece.data()), piece.size()});
        return true;
    });
    return is_read ? std::optional(sum.Hex()) : std::nullopt;
}
