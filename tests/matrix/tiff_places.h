// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_TIFF_PLACES_H
#define VELMARCON_TESTS_MATRIX_TIFF_PLACES_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/matrix/base_inputs.h"
#include "tests/matrix/bytes.h"

namespace matrix {

/// One entry of a directory in a file of the camera.
struct EntryPlaces {
    Directory directory = Directory::kMain;
    std::uint16_t number = 0;  ///< the tag
    Place tag;
    Place type;
    Place count;
    Place value;
    std::size_t base = 0;  ///< where the offsets of its directory count from
    std::size_t end = 0;   ///< behind the last byte that such an offset may name

    std::string Name() const;
};

/// A number that is no part of an entry.
struct NumberPlace {
    std::string name;
    Place place;
    std::size_t base = 0;
    std::size_t end = 0;
    bool moves_pixels = false;  ///< another value may give another raw image
};

struct TiffPlaces {
    std::vector<EntryPlaces> entries;
    std::vector<NumberPlace> numbers;
};

/// The places of an undamaged JPEG or DNG of the camera, its maker note among them.
TiffPlaces PlacesInJpeg(const Bytes& jpeg);
TiffPlaces PlacesInDng(const Bytes& dng);

/// Whether a DNG's raw image may be another one when this entry is damaged.
bool MovesPixels(Directory directory, std::uint16_t tag);

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_TIFF_PLACES_H
