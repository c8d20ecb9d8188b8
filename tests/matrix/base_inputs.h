// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_BASE_INPUTS_H
#define VELMARCON_TESTS_MATRIX_BASE_INPUTS_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "samples/camera_dng.h"
#include "samples/exif_block.h"
#include "samples/shot.h"
#include "tests/matrix/bytes.h"

namespace matrix {

constexpr int kDngWidth = 3920;  ///< of the raw image: the width that the sensor corrections know
constexpr int kDngHeight = 4;

/// The directories that a file of the camera holds.
enum class Directory : std::uint8_t { kMain, kRaw, kExif, kNote };
const char* NameOf(Directory directory);

/// Changes the entries of a directory.
using Edit = std::function<void(std::vector<samples::Entry>&)>;

/// The JPEG of a pair. The picture is tiny.
Bytes PairJpeg(samples::ByteOrder order, const samples::Shot& shot = {});
/// The same, little-endian, with one directory changed; it has no kRaw. A block beyond 64 KiB is there whole,
/// though its segment's length can't tell.
Bytes EditedJpeg(Directory directory, const Edit& edit);

/// A DNG of the camera with a small raw image, everything where the camera puts it.
samples::CameraDngFile SmallDng(const samples::Shot& shot = {});
Bytes CameraDng(const samples::Shot& shot = {});
/// The same with 16-bit pixels, as a repair leaves it.
Bytes RepairedDng();
/// A DNG of the camera with one directory changed, in which whatever is too long moves the rest behind it.
Bytes EditedDng(Directory directory, const Edit& edit);

/// Half a sensor dump, the least that is converted: what is missing is black.
Bytes RawFile();
/// A dark frame of the same length.
Bytes DarkFile();

/// For the lenses and for the camera of these files.
const std::string& LensDatabase();
const std::string& SensorDatabase();

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_BASE_INPUTS_H
