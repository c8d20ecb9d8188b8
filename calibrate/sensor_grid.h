// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_SENSOR_GRID_H
#define VELMARCON_CALIBRATE_SENSOR_GRID_H

#include <cstddef>
#include <span>
#include <vector>

#include "input/raw_layout.h"
#include "system/pixel_memory.h"

/// Divides the sensor into blocks of one column and a few rows. Blocks are small enough to tell where a
/// defect begins and large enough to average out noise; a grid takes a sixth of the memory of an image of the
/// same type.
namespace sensor_grid {

constexpr int kColumns = raw_layout::kImageWidth;
constexpr int kRows = raw_layout::kImageHeight;
constexpr int kHalf = kColumns / 2;  ///< the two halves are read out separately

constexpr int kBlockRows = 6;
constexpr int kBlocks = kRows / kBlockRows;  ///< per column
static_assert(kBlocks * kBlockRows == kRows);

/// Blocks that share one robust centre. The last patch also takes the remaining ones.
constexpr int kPatchBlocks = 4;
constexpr int kPatches = kBlocks / kPatchBlocks;
constexpr int kPatchRows = kPatchBlocks * kBlockRows;

/// A value for each block, block row by block row.
using Grid = std::vector<float>;
constexpr std::size_t kGridSize = std::size_t{kBlocks} * kColumns;

/// A grid whose values are all `value`.
inline Grid MakeGrid(float value) {
    Grid grid;
    pixel_memory::Reserve(grid, kGridSize);
    grid.assign(kGridSize, value);
    return grid;
}

inline std::span<float> Row(Grid& grid, int block) {
    return std::span(grid).subspan(static_cast<std::size_t>(block) * kColumns, kColumns);
}
inline std::span<const float> Row(const Grid& grid, int block) {
    return std::span(grid).subspan(static_cast<std::size_t>(block) * kColumns, kColumns);
}

/// The first column and the end column of the half that contains `column`.
constexpr int HalfBegin(int column) {
    return column < kHalf ? 0 : kHalf;
}
constexpr int HalfEnd(int column) {
    return column < kHalf ? kHalf : kColumns;
}

}  // namespace sensor_grid

#endif  // VELMARCON_CALIBRATE_SENSOR_GRID_H
