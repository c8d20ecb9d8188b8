// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_SUPPORT_TEST_PAIR_H
#define VELMARCON_TESTS_SUPPORT_TEST_PAIR_H

#include <cstdint>
#include <string>
#include <vector>

#include "samples/camera_jpeg.h"
#include "samples/shot.h"

namespace support {

/// Writes `base`.JPG (a tiny picture with the EXIF block of `shot`) and a full-size `base`.RAW whose pixel
/// (x, y) is TestPixel(x, y) into `folder`.
void WritePair(const std::string& folder, const std::string& base, const samples::Shot& shot = {});
void WritePair(const std::string& folder, const std::string& base, const samples::ExifBlock& block);

/// A 14-bit value that differs between neighbouring pixels in both directions.
std::uint16_t TestPixel(int x, int y);

/// The words of a RAW file of TestPixel; leading and trailing words are 0xFFFF.
const std::vector<std::uint16_t>& TestWords();

}  // namespace support

#endif  // VELMARCON_TESTS_SUPPORT_TEST_PAIR_H
