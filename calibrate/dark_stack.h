// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_DARK_STACK_H
#define VELMARCON_CALIBRATE_DARK_STACK_H

#include <cstdint>
#include <string>
#include <vector>

#include "calibrate/block_means.h"
#include "calibrate/sensor_grid.h"

/// What is kept of a dark exposure when the next one is read.
struct DarkExposure {
    std::string name;
    std::uint16_t iso = 0;
    float gain = 1;              ///< of the ISO speed
    PixelNoise noise;            ///< in raw units
    std::vector<float> columns;  ///< level of each column, in raw units
};

/// Dark exposures on top of each other, in units of the base ISO: for each block the mean of all, weighted by
/// the inverse of the variance, and enough to leave out the one that differs most from the others: a
/// particle's track. The memory that this takes does not depend on their number, but for the levels of
/// columns in DarkExposure.
class DarkStack {
  public:
    /// Takes an exposure whose `columns` are those of ColumnLevels.
    void Add(const BlockMeans& blocks, DarkExposure exposure);

    const std::vector<DarkExposure>& exposures() const { return exposures_; }

    /// Weight of an exposure in a mean: the inverse of its variance in units of the base ISO.
    static float Weight(const DarkExposure& exposure);

    /// The level of each block above its column's reference, from all exposures.
    sensor_grid::Grid Combined() const;

    /// What Combined is relative to, for each column: its level, in units of the base ISO, the black level
    /// included.
    std::vector<float> Reference() const;

    /// Standard deviation of a block in Combined, as the pixels' noise has it.
    float BlockNoise() const;

    /// In how many exposures a patch is clearly above, or below, its column's reference.
    int SeenAbove(int column, int patch) const { return static_cast<int>(above_[PatchIndex(column, patch)]); }
    int SeenBelow(int column, int patch) const { return static_cast<int>(below_[PatchIndex(column, patch)]); }

    /// Mean spread of a patch in units of the noise; that of nine normally distributed values is about 1.9.
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
    std::vector<float> shift_;      // of each half, weighted sum over the exposures
    float weight_ = 0;              // sum
    sensor_grid::Grid sum_;         // weighted
    sensor_grid::Grid highest_;     // in units of its exposure's noise
    // Numbers as floats, so that a loop has one type of vector: of the exposure, of exposures.
    sensor_grid::Grid highest_from_;
    std::vector<float> above_;
    std::vector<float> below_;
    std::vector<float> spread_;
};

/// The mean of each column's blocks, those further than `reach` from the middle of the column clipped.
std::vector<float> ClippedColumnMeans(const sensor_grid::Grid& grid, float reach);

/// The level of each column of one exposure, in raw units; `noise` is that of its pixels.
std::vector<float> ColumnLevels(const BlockMeans& blocks, float noise);

#endif  // VELMARCON_CALIBRATE_DARK_STACK_H
