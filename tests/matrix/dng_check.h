// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_DNG_CHECK_H
#define VELMARCON_TESTS_MATRIX_DNG_CHECK_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace matrix {

/// Where the raw image of a DNG stands.
struct RawStrip {
    std::uint64_t width = 0;
    std::uint64_t height = 0;
    std::size_t offset = 0;
    std::size_t size = 0;  ///< bytes
};

/// What is wrong with a DNG of the program's; empty when nothing is. It must be a little-endian TIFF file of
/// IFD0, EXIF IFD and, with a preview, a SubIFD: sorted entries of known types without a tag twice, every
/// value inside the file, nothing overlapping, nothing left over but one byte behind a value of odd length,
/// and each image in one strip of the length that its size asks for, the raw image as the last.
std::string FaultOfDng(std::span<const std::uint8_t> file, RawStrip& raw);

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_DNG_CHECK_H
