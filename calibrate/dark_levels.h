// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_DARK_LEVELS_H
#define VELMARCON_CALIBRATE_DARK_LEVELS_H

#include <span>
#include <vector>

#include "calibrate/dark_stack.h"
#include "calibrate/defect.h"
#include "calibrate/sensor_grid.h"

/// The blocks of the sensor that are listed as defective, wholly or in part.
class DefectMask {
  public:
    DefectMask()
        : listed_(sensor_grid::kGridSize), sound_blocks_(sensor_grid::kColumns, sensor_grid::kBlocks) {}

    /// Rows outside the sensor are passed over.
    void Add(int column, int first_row, int end_row);

    bool IsListed(int column, int block) const { return listed_[Index(column, block)]; }

    /// Blocks of the column that are not listed.
    int SoundBlocks(int column) const { return sound_blocks_[static_cast<std::size_t>(column)]; }

  private:
    static std::size_t Index(int column, int block) {
        return (static_cast<std::size_t>(block) * sensor_grid::kColumns) + static_cast<std::size_t>(column);
    }

    std::vector<bool> listed_;
    std::vector<int> sound_blocks_;  // of each column
};

/// The dark levels of a sensor.
struct DarkLevels {
    std::vector<float> absolute;  ///< of each column, the black level included, in raw units at the base ISO
    std::vector<float>
        above_darkest;  ///< what the database holds: above the darkest sound column, none negative

    /// What is left of the dark when the levels are taken away, at the base ISO, in raw units: the value for
    /// -b together with -s.
    long BlackAfterCorrection() const;
};

/// Computes them from what `mask` does not list. A column without sound rows is repaired from its neighbours
/// before levels are subtracted, so it gets what such a repair leaves: their levels, in the repair's shares.
DarkLevels ComputeLevels(const DarkStack& stack, const sensor_grid::Grid& combined, const DefectMask& mask);

#endif  // VELMARCON_CALIBRATE_DARK_LEVELS_H
