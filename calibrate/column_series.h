// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_COLUMN_SERIES_H
#define VELMARCON_CALIBRATE_COLUMN_SERIES_H

#include <vector>

#include "calibrate/sensor_grid.h"

/// The values of a grid by column, as differences from the column's median. What neighbouring columns share
/// in a row of blocks (row noise, shading) is subtracted.
class ColumnSeries {
  public:
    explicit ColumnSeries(const sensor_grid::Grid& grid);

    /// The median of each column.
    const std::vector<float>& medians() const { return medians_; }

    /// Measured standard deviation of a block of a sound column.
    float noise() const { return noise_; }

    /// The blocks of a column, top to bottom.
    std::span<const float> Column(int column) const {
        return std::span(values_).subspan(static_cast<std::size_t>(column) * sensor_grid::kBlocks,
                                          sensor_grid::kBlocks);
    }

  private:
    void SubtractShared(std::span<float> row) const;

    std::vector<float> medians_;
    std::vector<float> values_;
    float noise_ = 1;
};

#endif  // VELMARCON_CALIBRATE_COLUMN_SERIES_H
