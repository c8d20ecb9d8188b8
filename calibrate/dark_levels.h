// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_DARK_LEVELS_H
#define VELMARCON_CALIBRATE_DARK_LEVELS_H

#include <cstdint>
#include <span>
#include <vector>

#include "calibrate/dark_stack.h"
#include "calibrate/defect.h"
#include "calibrate/sensor_grid.h"

/// The blocks of the sensor that are wholly or partly listed as defective.
class DefectMask {
  public:
    DefectMask()
        : listed_(sensor_grid::kGridSize), sound_blocks_(sensor_grid::kColumns, sensor_grid::kBlocks) {}

    /// Lists these rows; rows outside the sensor are ignored.
    void Add(int column, int first_row, int end_row);

    bool IsListed(int column, int block) const { return listed_[Index(column, block)]; }

    /// The number of blocks of the column that are not listed.
    int SoundBlocks(int column) const { return sound_blocks_[static_cast<std::size_t>(column)]; }

  private:
    static std::size_t Index(int column, int block) {
        return (static_cast<std::size_t>(block) * sensor_grid::kColumns) + static_cast<std::size_t>(column);
    }

    std::vector<bool> listed_;
    std::vector<int> sound_blocks_;  // per column
};

/// The dark levels of a sensor.
struct DarkLevels {
    std::vector<float> absolute;  ///< per column, including the black level, in raw units at the base ISO
    /// The values for the database: relative to the darkest sound column, none negative.
    std::vector<float> above_darkest;

    /// The mean of what remains of the dark levels after the values of a database, one for each column, are
    /// subtracted, in raw units at the base ISO: the value for -b together with -s.
    std::uint16_t BlackAfter(std::span<const float> subtracted) const;
};

/// Computes the levels from the blocks that `mask` does not list. A column without sound rows is repaired
/// from its neighbours before levels are subtracted, so its level is the mean of theirs with the weights of
/// the repair.
DarkLevels ComputeLevels(const DarkStack& stack, const sensor_grid::Grid& combined, const DefectMask& mask);

#endif  // VELMARCON_CALIBRATE_DARK_LEVELS_H
