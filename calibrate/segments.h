// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_SEGMENTS_H
#define VELMARCON_CALIBRATE_SEGMENTS_H

#include <span>
#include <vector>

/// Splits a column into parts between which its level changes.
///
/// A series of block means is split where the mean of an interval differs most from that of the rest, in
/// standard deviations, repeatedly, as long as the difference is significant. This is circular binary
/// segmentation (A. B. Olshen et al., Circular binary segmentation for the analysis of array-based DNA copy
/// number data, Biostatistics 5, 2004), a CUSUM test (E. S. Page, Continuous inspection schemes, Biometrika
/// 41, 1954) for two changes at once.
namespace segments {

/// Blocks `begin` to `end` - 1.
struct Segment {
    int begin = 0;
    int end = 0;
    float level = 0;  ///< median
};

/// A quick test whether a series may have more than one segment, with sums over windows of doubling length.
/// `values` are in standard deviations.
bool MayChange(std::span<const float> values);

/// The segments from first to last; a single one if the level does not change. `values` are in standard
/// deviations of one value. Each is clipped to 4 from the median, so that it takes at least three in a row to
/// make a segment.
std::vector<Segment> Find(std::span<const float> values);

}  // namespace segments

#endif  // VELMARCON_CALIBRATE_SEGMENTS_H
