// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_DARK_STACK_H
#define VELMARCON_CALIBRATE_DARK_STACK_H

#include <cstdint>
#include <string>
#include <vector>

#include "calibrate/block_means.h"
#include "calibrate/sensor_grid.h"

/// The data of a dark exposure that are kept after the next one is read.
struct DarkExposure {
    std::string name;
    std::uint16_t iso = 0;
    float gain = 1;              ///< of its ISO speed
    PixelNoise noise;            ///< in raw units
    std::vector<float> columns;  ///< level of each column, in raw units
};

/// A stack of dark exposures, in units of the base ISO: for each block the mean weighted by inverse variance,
/// and the data needed to leave out the exposure that differs most from the others, because of a particle's
/// track. Memory does not grow with the number of exposures, except for the column levels in DarkExposure.
class DarkStack {
  public:
    /// Adds an exposure; its `columns` must come from ColumnLevels.
    void Add(const BlockMeans& blocks, DarkExposure exposure);

    const std::vector<DarkExposure>& exposures() const { return exposures_; }

    /// Weight of an exposure in a mean: the inverse of its variance in units of the base ISO.
    static float Weight(const DarkExposure& exposure);

    /// The level of each block relative to its column's reference, averaged over all exposures.
    sensor_grid::Grid Combined() const;

    /// The reference level of each column in Combined, in units of the base ISO, including the black level.
    std::vector<float> Reference() const;

    /// Standard deviation of a block in Combined, computed from the noise of the pixels.
    float BlockNoise() const;

    /// The number of exposures in which a patch is clearly above, or below, its column's reference.
    int SeenAbove(int column, int patch) const { return static_cast<int>(above_[PatchIndex(column, patch)]); }
    int SeenBelow(int column, int patch) const { return static_cast<int>(below_[PatchIndex(column, patch)]); }

    /// Mean spread of a patch relative to the noise; about 1.9 for nine normally distributed values.
    float Spread(int column, int patch) const;

  private:
    static std::size_t PatchIndex(int column, int patch) {
        return (static_cast<std::size_t>(patch) * sensor_grid::kColumns) + static_cast<std::size_t>(column);
    }
    void StartWith(const DarkExposure& exposure);
    std::vector<float> Shifts(const DarkExposure& exposure) const;
    void AddBlocks(const BlockMeans& blocks, const DarkExposure& exposure, std::span<const float> base);
    void CountPatches(const BlockMeans& blocks, const DarkExposure& exposure, std::span<const float> base);

    std::vector<DarkExposure> exposures_;
    std::vector<float> reference_;  // the levels of the first exposure
    std::vector<float> shift_;      // per half, weighted sum over the exposures
    float weight_ = 0;              // sum of the weights
    sensor_grid::Grid sum_;         // weighted sum over the exposures
    sensor_grid::Grid highest_;     // relative to the noise of the exposure
    // Exposure numbers and counts are floats, so that a loop has only one vector type.
    sensor_grid::Grid highest_from_;
    std::vector<float> above_;
    std::vector<float> below_;
    std::vector<float> spread_;
};

/// The mean of each column's blocks; blocks further than `reach` from the centre of the column are clipped.
std::vector<float> ClippedColumnMeans(const sensor_grid::Grid& grid, float reach);

/// The level of each column of one exposure, in raw units; `noise` is the noise of its pixels.
std::vector<float> ColumnLevels(const BlockMeans& blocks, float noise);

#endif  // VELMARCON_CALIBRATE_DARK_STACK_H
