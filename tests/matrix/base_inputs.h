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

constexpr int kDngWidth = 3920;  ///< of the raw image: the width that sensor corrections require
constexpr int kDngHeight = 4;

/// The IFDs in the camera's files.
enum class Directory : std::uint8_t { kMain, kRaw, kExif, kNote };
const char* NameOf(Directory directory);

/// Changes the entries of an IFD.
using Edit = std::function<void(std::vector<samples::Entry>&)>;

/// The JPEG of a pair, with a tiny picture.
Bytes PairJpeg(ByteOrder order, const samples::Shot& shot = {});
/// A little-endian PairJpeg with one IFD changed, which cannot be kRaw. An EXIF block larger than 64 KiB is
/// written completely, although the segment's length field cannot hold its size.
Bytes EditedJpeg(Directory directory, const Edit& edit);

/// A camera DNG with a small raw image and otherwise the camera's layout.
samples::CameraDngFile SmallDng(const samples::Shot& shot = {});
Bytes CameraDng(const samples::Shot& shot = {});
/// A CameraDng with 16-bit pixels, as a repair leaves it.
Bytes RepairedDng();
/// A CameraDng with one IFD changed; data that become too long move the data after them.
Bytes EditedDng(Directory directory, const Edit& edit);

/// Half a sensor dump, the shortest file that is converted; the missing pixels become black.
Bytes RawFile();
/// A dark frame of the same length.
Bytes DarkFile();

/// The databases for the lenses and the camera of these files.
const std::string& LensDatabase();
const std::string& SensorDatabase();

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_BASE_INPUTS_H
