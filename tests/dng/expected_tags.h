// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_DNG_EXPECTED_TAGS_H
#define VELMARCON_TESTS_DNG_EXPECTED_TAGS_H

#include <cstdint>
#include <string>
#include <vector>

#include "dng/dnglib.h"
#include "input/read_input_data.h"
#include "samples/tiff_entry.h"

/// A record and, typed by hand, the tags of its DNG.
namespace expected {

using Tags = std::vector<samples::Entry>;  ///< in ascending order

/// The record of a 8 x 6 image, as loading leaves it; every value differs from the others.
ReadInputData Record();

/// What a build of the tree asks for.
struct Mode {
    bool preview = false;
    bool black_level = false;  ///< BlackLevel is then 368: 92 at the record's ISO 640
    bool raw_variant = false;
};

/// The three IFDs for Record() before the layout: offsets are 0.
Tags Ifd0(const Mode& mode);
Tags SubIfd(const Mode& mode);
Tags ExifIfd();

/// One line an entry: tag, type, count, bytes as they stand in the tree.
std::string Listing(const Tags& tags);
std::string Listing(const DNGlib::IFD& ifd);

std::string Hex(const std::vector<std::uint8_t>& bytes);

}  // namespace expected

#endif  // VELMARCON_TESTS_DNG_EXPECTED_TAGS_H
