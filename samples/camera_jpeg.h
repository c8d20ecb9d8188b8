// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_CAMERA_JPEG_H
#define VELMARCON_SAMPLES_CAMERA_JPEG_H

#include <cstdint>
#include <span>
#include <vector>

#include "samples/exif_block.h"
#include "samples/rgb_image.h"
#include "samples/shot.h"

namespace samples {

/// The EXIF IFD entries that the camera's JPEGs and DNGs share, including `maker_note`, in tag order and with
/// the types that the DNGs use.
std::vector<Entry> ShootingEntries(const Shot& shot, const std::vector<std::uint8_t>& maker_note);

/// The EXIF block of the camera's JPEG: little-endian, with the JPEG's 19-entry maker note and a thumbnail.
/// ShutterSpeedValue and ExposureBiasValue have the type RATIONAL but the bits of signed values.
ExifBlock CameraExif(const Shot& shot);

/// Adds an IFD1 with the thumbnail `jpeg` to `block`, which must stay below 64 KB.
void SetThumbnail(ExifBlock& block, const std::vector<std::uint8_t>& jpeg);

/// What an image editor that rewrote a JPEG did to the maker note.
enum class EditedNote : std::uint8_t {
    kLost,          ///< removed it
    kValuesOutside  ///< kept the table alone, with offsets that lead out of it
};

/// The EXIF block of a JPEG that an image editor rewrote.
ExifBlock EditedExif(const Shot& shot, EditedNote note);

/// `image` as a JPEG file from SOI to EOI, without any APP segment. `quality` is libjpeg's, 1 to 100. Empty
/// if libjpeg refuses the image (a side of 0 or above 65500 pixels). In a build without libjpeg it is only
/// SOI and EOI.
std::vector<std::uint8_t> EncodeJpeg(const RgbImage& image, int quality = 90);

/// A grey image of 8 x 8 pixels, encoded with EncodeJpeg: for tests that never look at the picture.
const std::vector<std::uint8_t>& TinyJpeg();

/// `jpeg` (SOI to EOI) with an APP1 segment of `exif` (at most 65533 bytes) right after SOI: the segment's
/// length is at byte 4 of the file, the block at byte 6. Ends with FF D9 if `jpeg` does.
std::vector<std::uint8_t> CameraJpeg(std::span<const std::uint8_t> exif,
                                     std::span<const std::uint8_t> jpeg = TinyJpeg());
std::vector<std::uint8_t> CameraJpeg(const ExifBlock& block, std::span<const std::uint8_t> jpeg = TinyJpeg());

}  // namespace samples

#endif  // VELMARCON_SAMPLES_CAMERA_JPEG_H
