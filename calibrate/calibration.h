// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_CALIBRATION_H
#define VELMARCON_CALIBRATE_CALIBRATION_H

#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "base/pixel.h"
#include "calibrate/block_means.h"
#include "calibrate/dark_levels.h"
#include "calibrate/dark_stack.h"
#include "calibrate/defect.h"
#include "calibrate/flat_stack.h"

/// An exposure as it was read, a whole frame.
struct ExposureImage {
    std::string name;
    std::uint16_t iso = 0;
    std::span<const Pixel> pixels;
};

/// Rows `first_row` to `end_row` - 1 of a column, as a database lists them.
struct ListedRows {
    int column = 0;
    int first_row = 0;
    int end_row = 0;
};

/// The stripes of one dark exposure: standard deviations of its columns' means, in raw units.
struct Stripes {
    float before = 0;
    float after = 0;  ///< after correction with levels that do not include this exposure; negative if there
                      ///< are no such levels
    float noise = 0;  ///< the part that the exposure's own noise causes
};

/// Measures a sensor: call AddDark for every dark exposure, then Search, then AddFlat for every flat one,
/// then Finish.
class Calibration {
  public:
    /// Rows that are already listed; they are not measured. Call before Search.
    void SetListed(std::vector<ListedRows> listed) { listed_ = std::move(listed); }

    /// Returns why the exposure was left out, empty if it was not.
    [[nodiscard]] std::string AddDark(const ExposureImage& image);

    /// Evaluates the dark exposures, of which there must be at least one.
    void Search();

    /// Returns why the exposure was left out, empty if it was not. Call after Search.
    [[nodiscard]] std::string AddFlat(const ExposureImage& image);

    /// Evaluates the flat exposures, if there are any, and computes the levels. With `with_doubtful`, the
    /// rows of doubtful defects are left out of the levels as well.
    void Finish(bool with_doubtful);

    const DarkStack& darks() const { return darks_; }
    int flats() const { return flats_.count(); }
    const std::vector<Defect>& defects() const { return defects_; }  ///< sorted by column and row
    const DarkLevels& levels() const { return levels_; }
    const DefectMask& mask() const { return mask_; }

    /// How well the levels correct one of the dark exposures. This cannot be told from a single exposure.
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
    BlockMeans blocks_;  // of the current exposure; a member so that its memory is reused
    BlockMeans odd_blocks_;
};

/// Standard deviation of `columns` around the median of each half, without the columns of `mask`. Outliers,
/// such as an unlisted defect, do not count.
float StripeSize(std::span<const float> columns, const DefectMask& mask);

#endif  // VELMARCON_CALIBRATE_CALIBRATION_H
