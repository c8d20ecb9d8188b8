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

/// A DNG as the camera writes it: little-endian, the three directories one
/// behind the other from byte 8 on, then their values, the preview strips
/// at kDngPreviewOffset and the raw strips at kDngRawOffset, up to the end.
struct CameraDngFile {
    std::vector<Entry> ifd0 = {};
    std::vector<Entry> raw_ifd = {};
    std::vector<Entry> exif = {};
    std::vector<std::uint8_t> preview = {};  ///< 320 x 240 pixels, red, green, blue
    std::vector<std::uint8_t> raw = {};      ///< see CroppedBytes
};

constexpr int kDngPreviewPictureHeight = 214;  ///< 3:2 on the preview's width; black above and below

/// A scene of kDngPreviewWidth x kDngPreviewPictureHeight pixels as a preview: 230400 bytes.
std::vector<std::uint8_t> PreviewOf(const Scene& scene);

/// The file of `shot`; its entries, preview and raw pixels may be changed afterwards. The strip offsets stay
/// as they are whatever is changed.
CameraDngFile CameraDng(const Shot& shot, std::vector<std::uint8_t> preview, std::vector<std::uint8_t> raw);

/// The bytes of the file; kCameraDngBytes with everything as CameraDng gives it. A SubIFDs or ExifIFD entry
/// without a raw field is made to point at its directory, wherever more or fewer entries have moved it. A
/// longer preview is cut where the raw strips begin. Empty when directories and values do not fit before
/// kDngPreviewOffset.
std::vector<std::uint8_t> Serialize(const CameraDngFile& file);

}  // namespace samples

#endif  // VELMARCON_SAMPLES_CAMERA_DNG_H
