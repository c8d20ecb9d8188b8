// SPDX-License-Identifier: MIT
#include "batch/proof/jpeg_exif.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "batch/proof/file_head.h"

namespace {

/// A JPEG's last two bytes.
constexpr std::array<std::uint8_t, 2> kEndOfImage = {0xFF, 0xD9};

/// The shooting data in the first `limit` bytes of the file.
std::optional<EXIFInfo> ReadUpTo(const std::string& jpg, std::size_t limit) {
    auto bytes = ReadHead(jpg, limit);
    if (!bytes) {
        return std::nullopt;
    }
    if (bytes->size() == limit) {
        // The parser takes only what ends as a JPEG does.
        bytes->insert(bytes->end(), kEndOfImage.begin(), kEndOfImage.end());
    }
    EXIFInfo exif;
    if (exif.parseFrom(bytes->data(), static_cast<unsigned int>(bytes->size())) != 0) {
        return std::nullopt;
    }
    return exif;
}

/// Values may stand behind the EXIF block, anywhere in the file.
bool LacksAnything(const EXIFInfo& exif) {
    return exif.ImageUniqueID.empty() || exif.DateTimeOriginal.empty() || exif.MakerNote.empty();
}

}  // namespace

std::optional<EXIFInfo> ReadJpegExif(const std::string& jpg) {
    auto exif = ReadUpTo(jpg, kHeadSize);
    return exif && !LacksAnything(*exif) ? exif : ReadUpTo(jpg, kLongestFile);
}
