// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_DNG_EXPECTED_TAGS_H
#define VELMARCON_TESTS_DNG_EXPECTED_TAGS_H

#include <cstdint>
#include <string>
#include <vector>

#include "dng/dnglib.h"
#include "input/read_input_data.h"
#include "samples/tiff_entry.h"

/// A record and the tags of its DNG, written by hand.
namespace expected {

using Tags = std::vector<samples::Entry>;  ///< in ascending order

/// The loaded record of an 8 x 6 image, in which no two values are equal.
ReadInputData Record();

/// The options with which the tree is built.
struct Mode {
    bool preview = false;
    bool black_level = false;  ///< BlackLevel is then 368: 92 at the record's ISO 640
    bool raw_variant = false;
};

/// The three IFDs for Record() before the layout: offsets are 0.
Tags Ifd0(const Mode& mode);
Tags SubIfd(const Mode& mode);
Tags ExifIfd();

/// One line per entry: tag, type, count, and the bytes of the value.
std::string Listing(const Tags& tags);
std::string Listing(const DNGlib::IFD& ifd);

std::string Hex(const std::vector<std::uint8_t>& bytes);

}  // namespace expected

#endif  // VELMARCON_TESTS_DNG_EXPECTED_TAGS_H
