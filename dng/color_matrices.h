// SPDX-License-Identifier: MIT
#ifndef VELMARCON_DNG_COLOR_MATRICES_H
#define VELMARCON_DNG_COLOR_MATRICES_H

#include <array>

#include "tiff/rational.h"

/// 3 x 3 matrices of a DNG's colour model (DNG 1.4, chapter 6), row by row, as SRATIONALs.
namespace color_matrices {

using Matrix = std::array<SRational, 9>;

/// Convert CIE XYZ to the camera's colours, for the two calibration illuminants, A and D65.
struct Pair {
    Matrix color_matrix1;
    Matrix color_matrix2;
};

// One line per row of a matrix.
// clang-format off

constexpr Pair kPlain = {
    {{{625, 597}, {-110, 207}, {16, 125},
      {-138, 319}, {761, 625}, {112, 463},
      {-150, 1693}, {229, 926}, {179, 250}}},
    {{{307, 400}, {-439, 2000}, {-14, 459},
      {-293, 500}, {2345, 1661}, {187, 1007},
      {-97, 400}, {115, 287}, {544, 827}}},
};

/// For the raw model variant.
constexpr Pair kRawVariant = {
    {{{107, 125}, {-335, 1647}, {-2, 303},
      {-53, 125}, {34, 25}, {73, 250},
      {-37, 500}, {144, 583}, {449, 500}}},
    {{{313, 500}, {-59, 579}, {-29, 617},
      {-210, 563}, {229, 200}, {193, 1000},
      {-72, 511}, {59, 200}, {621, 1000}}},
};

constexpr Matrix kIdentity = {{{1, 1}, {0, 1}, {0, 1},
                               {0, 1}, {1, 1}, {0, 1},
                               {0, 1}, {0, 1}, {1, 1}}};

// clang-format on

}  // namespace color_matrices

#endif  // VELMARCON_DNG_COLOR_MATRICES_H
