// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_SUPPORT_DNG_CHECK_H
#define VELMARCON_TESTS_SUPPORT_DNG_CHECK_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace support {

/// Where the raw image of a DNG is.
struct RawStrip {
    std::uint64_t width = 0;
    std::uint64_t height = 0;
    std::size_t offset = 0;
    std::size_t size = 0;  ///< bytes
};

/// Checks a DNG that the program wrote, and returns its first fault, empty if there is none. The DNG must be
/// a little-endian TIFF file with IFD0, EXIF IFD and, with a preview, a SubIFD. Entries must be sorted, have
/// known types and unique tags, and their values must lie in the file. IFDs, values and strips must be at
/// even offsets. Nothing may overlap, and no bytes may be unused except one after a value of odd length. Each
/// image must be in one strip that matches its size, and the raw image must come last. All tests and fuzz
/// targets take this for a complete DNG.
std::string FaultOfDng(std::span<const std::uint8_t> file, RawStrip& raw);

}  // namespace support

#endif  // VELMARCON_TESTS_SUPPORT_DNG_CHECK_H
