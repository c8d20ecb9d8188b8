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

/// One entry of an IFD in a file of the camera.
struct EntryPlaces {
    Directory directory = Directory::kMain;
    std::uint16_t number = 0;  ///< the tag
    Place tag;
    Place type;
    Place count;
    Place value;
    std::size_t base = 0;  ///< where the offsets of its IFD count from
    std::size_t end = 0;   ///< the end of the bytes that such an offset can reach

    std::string Name() const;
};

/// A number that is not part of an entry.
struct NumberPlace {
    std::string name;
    Place place;
    std::size_t base = 0;
    std::size_t end = 0;
    bool moves_pixels = false;  ///< whether another value may change the raw image
};

struct TiffPlaces {
    std::vector<EntryPlaces> entries;
    std::vector<NumberPlace> numbers;
};

/// The places in an undamaged JPEG or DNG of the camera, including its maker note.
TiffPlaces PlacesInJpeg(const Bytes& jpeg);
TiffPlaces PlacesInDng(const Bytes& dng);

/// Whether damage to this entry of a DNG may change its raw image.
bool MovesPixels(Directory directory, std::uint16_t tag);

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_TIFF_PLACES_H
