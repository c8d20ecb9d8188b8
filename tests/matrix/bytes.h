// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_BYTES_H
#define VELMARCON_TESTS_MATRIX_BYTES_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace matrix {

using Bytes = std::vector<std::uint8_t>;

/// Where a number is in a file.
struct Place {
    std::size_t offset = 0;
    std::size_t width = 4;  ///< bytes, 2 or 4
    bool big_endian = false;
};

/// The number at `place`, which must lie in `bytes`.
inline std::uint32_t Get(std::span<const std::uint8_t> bytes, Place place) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < place.width; ++i) {
        const std::size_t byte = place.big_endian ? i : place.width - 1 - i;
        number = number << 8U | bytes[place.offset + byte];
    }
    return number;
}

/// Writes the low bytes of `number` to `place`, which must lie in `bytes`.
inline void Put(std::span<std::uint8_t> bytes, Place place, std::uint32_t number) {
    for (std::size_t i = 0; i < place.width; ++i, number >>= 8U) {
        const std::size_t byte = place.big_endian ? place.width - 1 - i : i;
        bytes[place.offset + byte] = static_cast<std::uint8_t>(number);
    }
}

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_BYTES_H
