// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_CAMERA_DNG_H
#define VELMARCON_SAMPLES_CAMERA_DNG_H

#include "samples/rgb_image.h"
#include "samples/shot.h"
#include "samples/tiff_entry.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace samples {

constexpr std::size_t kCameraDngBytes = 10575296;
constexpr std::uint32_t kDngIfd0Offset = 8;
constexpr std::uint32_t kDngRawIfdOffset = 494;
constexpr std::uint32_t kDngExifIfdOffset = 764;
constexpr std::uint32_t kDngPreviewOffset = 3936;
constexpr std::uint32_t kDngRawOffset = 234336;
constexpr int kDngPreviewWidth = 320;
constexpr int kDngPreviewHeight = 240;

/// A DNG as the camera writes it: little-endian, the three directories one behind the other from byte 8 on,
/// then their values, the preview strips at kDngPreviewOffset and the raw strips at kDngRawOffset, up to the
/// end.
struct CameraDngFile {
    std::vector<Entry> ifd0;
    std::vector<Entry> raw_ifd;
    std::vector<Entry> exif;
    std::vector<std::uint8_t> preview;  ///< 320 x 240 pixels, red, green, blue
    std::vector<std::uint8_t> raw;      ///< see CroppedBytes
};

/// The file of `shot`, whose preview and raw pixels may be changed afterwards like all entries. SubIFDs and
/// ExifIFD hold the usual offsets; a change in the number of entries moves the directories, and Serialize
/// then corrects the two pointers if they still hold the usual values.
CameraDngFile CameraDng(const Shot& shot, std::vector<std::uint8_t> preview, std::vector<std::uint8_t> raw);

/// The bytes of the file; kCameraDngBytes with everything as CameraDng gives it. Directories and values that
/// do not fit before kDngPreviewOffset give an empty file.
std::vector<std::uint8_t> Serialize(const CameraDngFile& file);

}  // namespace samples

#endif  // VELMARCON_SAMPLES_CAMERA_DNG_H
