// SPDX-License-Identifier: MIT
#include "exif/exposure_rules.h"

#include <array>
#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

TEST(SnapExposureTime, TheThreeFastestTimesBecomeNominal) {
    EXPECT_EQ(SnapExposureTime({166, 1000000}), (Rational{1, 6000}));
    EXPECT_EQ(SnapExposureTime({333, 1000000}), (Rational{1, 3000}));
    EXPECT_EQ(SnapExposureTime({666, 1000000}), (Rational{1, 1500}));
}

TEST(SnapExposureTime, OnlyTheNumeratorCounts) {
    EXPECT_EQ(SnapExposureTime({166, 1}), (Rational{1, 6000}));
    EXPECT_EQ(SnapExposureTime({333, 0}), (Rational{1, 3000}));
    EXPECT_EQ(SnapExposureTime({332, 2000000}), (Rational{332, 2000000}));
}

TEST(SnapExposureTime, EveryOtherTimeIsKept) {
    for (const std::uint32_t numerator : {0U, 1U, 165U, 167U, 332U, 334U, 665U, 667U, 4000U}) {
        EXPECT_EQ(SnapExposureTime({numerator, 1000000}), (Rational{numerator, 1000000}));
    }
}

struct Bias {
    SRational ev;
    std::int32_t thirds;
};

constexpr std::array<Bias, 14> kBiases = {{
    {{0, 1}, 0},
    {{1, 3}, 1},
    {{2, 3}, 2},
    {{1, 1}, 3},
    {{21845, 65536}, 1},  // a third, as the camera writes it
    {{1, 2}, 2},
    // Below zero, too, the half is added before the fraction is cut off.
    {{-1, 3}, 0},
    {{-2, 3}, -1},
    {{-1, 2}, -1},
    {{-1, 1}, -2},
    {{2, -3}, -1},
    {{kHighest, 1}, kHighest},
    {{kLowest, 1}, kLowest},
    {{kLowest, -1}, kHighest},
}};

TEST(ExposureBiasInThirds, AddsAHalfAndCutsTowardZero) {
    for (const auto& [ev, thirds] : kBiases) {
        EXPECT_EQ(ExposureBiasInThirds(ev), (SRational{thirds, 3})) << ev.numerator << "/" << ev.denominator;
    }
}

TEST(ExposureBiasInThirds, AZeroDenominatorGivesZeroThirds) {
    EXPECT_EQ(ExposureBiasInThirds({0, 0}), (SRational{0, 3}));
    EXPECT_EQ(ExposureBiasInThirds({5, 0}), (SRational{0, 3}));
}

}  // namespace
