// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_STATISTICS_H
#define VELMARCON_CALIBRATE_STATISTICS_H

#include <cstdint>
#include <span>
#include <vector>

/// Robust statistics, which a few outliers do not affect. (P. J. Huber, Robust Statistics, 1981; F. R.
/// Hampel, The influence curve and its role in robust estimation, 1974.)
namespace statistics {

/// The median; for an even number of values the mean of the middle two, 0 without values. Reorders `values`.
float Median(std::span<float> values);

/// Standard deviation of normally distributed values, from their median absolute deviation from `centre`
/// (MAD, Hampel 1974). Reorders `values`.
float DeviationAround(float centre, std::span<float> values);

/// DeviationAround the median of the values.
float Deviation(std::span<float> values);

/// Mean of the values, where values further than `reach` from `centre` count as at that distance (one step of
/// Huber's M-estimator); `centre` without values.
float ClippedMean(std::span<const float> values, float centre, float reach);

/// Counts how often each absolute difference of whole numbers occurs.
class DifferenceHistogram {
  public:
    DifferenceHistogram() : counts_(kBins) {}

    void Add(int difference) {
        const auto size = static_cast<std::size_t>(difference < 0 ? -difference : difference);
        ++counts_[size < kBins ? size : kBins - 1];
    }

    /// Standard deviation of the differences, from their MAD around 0. Values are taken as evenly spread
    /// within a bin, so the result is not limited to whole numbers.
    float Deviation() const;

  private:
    static constexpr std::size_t kBins = 16384;
    std::vector<std::uint32_t> counts_;
};

}  // namespace statistics

#endif  // VELMARCON_CALIBRATE_STATISTICS_H
