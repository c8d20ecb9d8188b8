// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_STATISTICS_H
#define VELMARCON_CALIBRATE_STATISTICS_H

#include <cstdint>
#include <span>
#include <vector>

/// Robust statistics: a few wild values do not change them. (P. J. Huber, Robust Statistics, 1981; F. R.
/// Hampel, The influence curve and its role in robust estimation, 1974.)
namespace statistics {

/// The median; the mean of the two in the middle when their number is even, 0 without values. Reorders
/// `values`.
float Median(std::span<float> values);

/// Standard deviation of normally distributed values by their median absolute deviation around `centre` (MAD,
/// Hampel 1974). Reorders `values`.
float DeviationAround(float centre, std::span<float> values);

/// The same around their median.
float Deviation(std::span<float> values);

/// Mean of the values with those further than `reach` from `centre` taken as if at that distance (one step of
/// Huber's M-estimator); `centre` without values.
float ClippedMean(std::span<const float> values, float centre, float reach);

/// How often each absolute difference of whole numbers occurred.
class DifferenceHistogram {
  public:
    DifferenceHistogram() : counts_(kBins) {}

    void Add(int difference) {
        const auto size = static_cast<std::size_t>(difference < 0 ? -difference : difference);
        ++counts_[size < kBins ? size : kBins - 1];
    }

    /// Standard deviation of the differences by their MAD around 0. Within a bin they count as evenly spread,
    /// so that it is no whole number.
    float Deviation() const;

  private:
    static constexpr std::size_t kBins = 16384;
    std::vector<std::uint32_t> counts_;
};

}  // namespace statistics

#endif  // VELMARCON_CALIBRATE_STATISTICS_H
