// SPDX-License-Identifier: MIT
#ifndef VELMARCON_DNG_COLOR_MATRICES_H
#define VELMARCON_DNG_COLOR_MATRICES_H

#include <array>

/// 3 x 3 matrices of a DNG's colour model (DNG 1.4, chapter 6), row by row, as SRATIONALs.
namespace color_matrices {

constexpr unsigned int kElements = 9;

struct Matrix {
    std::array<int, kElements> numerators;
    std::array<int, kElements> denominators;
};

/// From CIE XYZ to the camera's colours, for the two calibration illuminants: A and D65.
struct Pair {
    Matrix color_matrix1;
    Matrix color_matrix2;
};

constexpr Pair kPlain = {
    {{625, -110, 16, -138, 761, 112, -150, 229, 179}, {597, 207, 125, 319, 625, 463, 1693, 926, 250}},
    {{307, -439, -14, -293, 2345, 187, -97, 115, 544}, {400, 2000, 459, 500, 1661, 1007, 400, 287, 827}},
};

/// For the raw model variant.
constexpr Pair kRawVariant = {
    {{107, -335, -2, -53, 34, 73, -37, 144, 449}, {125, 1647, 303, 125, 25, 250, 500, 583, 500}},
    {{313, -59, -29, -210, 229, 193, -72, 59, 621}, {500, 579, 617, 563, 200, 1000, 511, 200, 1000}},
};

constexpr Matrix kIdentity = {{1, 0, 0, 0, 1, 0, 0, 0, 1}, {1, 1, 1, 1, 1, 1, 1, 1, 1}};

}  // namespace color_matrices

#endif  // VELMARCON_DNG_COLOR_MATRICES_H
