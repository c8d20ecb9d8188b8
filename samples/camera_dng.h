// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_CAMERA_DNG_H
#define VELMARCON_SAMPLES_CAMERA_DNG_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "samples/scene.h"
#include "samples/shot.h"
#include "samples/tiff_entry.h"

namespace samples {

constexpr std::size_t kCameraDngBytes = 10575296;
constexpr std::uint32_t kDngIfd0Offset = 8;
constexpr std::uint32_t kDngRawIfdOffset = 494;
constexpr std::uint32_t kDngExifIfdOffset = 764;
constexpr std::uint32_t kDngPreviewOffset = 3936;
constexpr std::uint32_t kDngRawOffset = 234336;
constexpr int kDngPreviewWidth = 320;
constexpr int kDngPreviewHeight = 240;

/// A DNG as the camera writes it: little-endian, the three IFDs in a row from byte 8 on, then their values,
/// the preview strips at kDngPreviewOffset, and the raw strips from kDngRawOffset to the end.
struct CameraDngFile {
    std::vector<Entry> ifd0 = {};
    std::vector<Entry> raw_ifd = {};
    std::vector<Entry> exif = {};
    std::vector<std::uint8_t> preview = {};  ///< 320 x 240 pixels, red, green, blue
    std::vector<std::uint8_t> raw = {};      ///< see CroppedBytes
};

constexpr int kDngPreviewPictureHeight = 214;  ///< 3:2 at the preview's width; black above and below

/// The preview of a scene of kDngPreviewWidth x kDngPreviewPictureHeight pixels: 230400 bytes.
std::vector<std::uint8_t> PreviewOf(const Scene& scene);

/// The file of `shot`. Its entries, preview and raw pixels may be changed afterwards; the strip offsets do
/// not follow such changes.
CameraDngFile CameraDng(const Shot& shot, std::vector<std::uint8_t> preview, std::vector<std::uint8_t> raw);

/// The bytes of the file, kCameraDngBytes if it is unchanged since CameraDng. A SubIFDs or ExifIFD
/// entry without a raw field is set to the offset of its IFD, also after entries were added or removed. A
/// preview that is too long is cut where the raw strips begin. Empty if IFDs and values do not fit before
/// kDngPreviewOffset.
std::vector<std::uint8_t> Serialize(const CameraDngFile& file);

}  // namespace samples

#endif  // VELMARCON_SAMPLES_CAMERA_DNG_H
