// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_SEGMENTS_H
#define VELMARCON_CALIBRATE_SEGMENTS_H

#include <span>
#include <vector>

/// The parts of a column between which its level changes.
///
/// A series of block means is cut where the mean of an interval differs most from that of the rest, in
/// standard deviations, again and again as long as the difference is significant: circular binary
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

/// A quick look at whether a series may have more than one segment: sums over windows of doubling length.
/// `values` are in standard deviations.
bool MayChange(std::span<const float> values);

/// The segments, from first to last; one if nothing changes. `values` are in standard deviations of one
/// value; each counts as no more than 4 from the median, so that it takes at least three in a row to make a
/// segment.
std::vector<Segment> Find(std::span<const float> values);

}  // namespace segments

#endif  // VELMARCON_CALIBRATE_SEGMENTS_H
