// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_CALIBRATION_H
#define VELMARCON_CALIBRATE_CALIBRATION_H

#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "calibrate/block_means.h"
#include "calibrate/dark_levels.h"
#include "calibrate/dark_stack.h"
#include "calibrate/defect.h"
#include "calibrate/flat_stack.h"

/// An exposure as it was read: a whole frame.
struct ExposureImage {
    std::string name;
    std::uint16_t iso = 0;
    std::span<const std::uint16_t> pixels;
};

/// Rows of a column that someone has listed, from `first_row` to `end_row` - 1.
struct ListedRows {
    int column = 0;
    int first_row = 0;
    int end_row = 0;
};

/// The stripes of one dark exposure: standard deviations of its columns' means, in raw units.
struct Stripes {
    float before = 0;
    float after = 0;  ///< of the correction, with levels to which this exposure has not contributed; less
                      ///< than 0: all have
    float noise = 0;  ///< what the exposure's own noise gives
};

/// Measures a sensor: first every dark exposure, then Search, then every flat one, then Finish.
class Calibration {
  public:
    /// Rows that are listed already; they do not count. Called before Search.
    void SetListed(std::vector<ListedRows> listed) { listed_ = std::move(listed); }

    /// Returns why the exposure was left out, or an empty text.
    [[nodiscard]] std::string AddDark(const ExposureImage& image);

    /// Finds what the dark exposures, one at least, show.
    void Search();

    /// Returns why the exposure was left out, or an empty text. Called after Search.
    [[nodiscard]] std::string AddFlat(const ExposureImage& image);

    /// Finds what the flat exposures show, if there were any, and computes the levels. With `with_doubtful`
    /// the rows of doubtful defects do not count either.
    void Finish(bool with_doubtful);

    const DarkStack& darks() const { return darks_; }
    int flats() const { return flats_.count(); }
    const std::vector<Defect>& defects() const { return defects_; }  ///< by column and row
    const DarkLevels& levels() const { return levels_; }
    const DefectMask& mask() const { return mask_; }

    /// How well the levels do for one of the dark exposures. With a single one that cannot be told.
    Stripes StripesOf(std::size_t dark) const;

  private:
    DefectMask MaskOf(std::span<const ListedRows> listed, bool with_doubtful) const;

    std::vector<ListedRows> listed_;
    DarkStack darks_;
    FlatStack flats_;
    sensor_grid::Grid combined_;
    std::vector<Defect> defects_;
    DefectMask mask_;
    DarkLevels levels_;
    BlockMeans blocks_;  // of the exposure at hand; kept for their memory
    BlockMeans odd_blocks_;
};

/// Standard deviation of `columns` around the median of each half, without the columns of `mask`. Far values,
/// as an unlisted defect has, do not count.
float StripeSize(std::span<const float> columns, const DefectMask& mask);

#endif  // VELMARCON_CALIBRATE_CALIBRATION_H
