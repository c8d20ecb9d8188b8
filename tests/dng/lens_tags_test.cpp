// SPDX-License-Identifier: MIT
#include "dng/lens_tags.h"

#include <climits>
#include <cmath>
#include <limits>
#include <ostream>
#include <vector>

#include <gtest/gtest.h>

namespace {

TEST(EstimatedFNumber, IsTheDifferencePlusAConstantIn32Bits) {
    constexpr std::int32_t lowest = -2147483647 - 1;
    constexpr std::int32_t highest = 2147483647;
    struct Case {
        std::int32_t external;
        std::int32_t measured;
        std::int32_t estimate;
    };
    for (const auto& [external, measured, estimate] : {
             Case{0, 0, 285082}, Case{49152, -32768, 367002},  // 49152 + 32768 + 285082
             Case{0, 300000, -14918},                          // negative
             Case{highest, 0, -2147198567},                    // 2147483647 + 285082 - 2^32
             Case{lowest, highest, 285083},                    // 1 + 285082
             Case{lowest, 285082, lowest}                      // -2^31 exactly
         }) {
        EXPECT_EQ(lens_tags::EstimatedFNumber(external, measured), estimate);
    }
}

TEST(FindLens, TakesOnlyACodeThatIsKnown) {
    lensdb lenses;
    lenses.Lenses["000011"].Model = "known";
    EXPECT_EQ(lens_tags::FindLens(lenses, "000011"), &lenses.Lenses["000011"]);
    EXPECT_EQ(lens_tags::FindLens(lenses, "000100"), nullptr);
    EXPECT_EQ(lens_tags::FindLens(lenses, ""), nullptr);
    EXPECT_EQ(lenses.Lenses.size(), 1U);  // a look-up does not add the code
}

struct WalkCase {
    const char* name;
    std::vector<std::int32_t> apertures;
    std::int32_t estimate;
    std::int32_t nearest;

    friend void PrintTo(const WalkCase& test, std::ostream* out) { *out << test.name; }
};

class NearestAperture : public testing::TestWithParam<WalkCase> {};

TEST_P(NearestAperture, IsTheLastBeforeTheDistanceGrows) {
    EXPECT_EQ(lens_tags::NearestAperture(GetParam().apertures, GetParam().estimate), GetParam().nearest);
}

const std::vector<WalkCase> kWalks = {
    {"BelowAll", {1000, 2000, 4000}, 10, 1000},
    {"FirstExactly", {1000, 2000, 4000}, 1000, 1000},
    {"NearerToTheEarlier", {1000, 2000, 4000}, 1499, 1000},
    {"MidwayTakesTheLater", {1000, 2000, 4000}, 1500, 2000},
    {"MidwayBetweenTheLastTwo", {1000, 2000, 4000}, 3000, 4000},
    {"NearerToTheLater", {1000, 2000, 4000}, 3001, 4000},
    {"AboveAllTakesTheLast", {1000, 2000, 4000}, 9000, 4000},
    {"TwiceTheSame", {1000, 2000, 2000, 4000}, 2100, 2000},
    {"SingleBelow", {1000}, 10, 1000},
    {"SingleAbove", {1000}, 9000, 1000},
    {"NegativeEstimate", {1000, 2000}, -5000, 1000},
    {"FirstJustNearEnough", {1000, 2000}, 100001000, 2000},
    {"FirstTooFar", {1000, 2000}, 100001001, 1000},
    {"SingleTooFar", {1000}, 200000000, 1000},
    {"FarthestEstimate", {1000, 2000}, INT_MIN, 1000},
    {"FarthestApart", {INT_MAX}, INT_MIN, INT_MAX},
};

INSTANTIATE_TEST_SUITE_P(Walks, NearestAperture, testing::ValuesIn(kWalks),
                         testing::PrintToStringParamName());

TEST(MaxApertureValue, IsTheApexValueInWholeThousandths) {
    struct Case {
        std::int32_t widest;
        std::uint32_t thousandths;
    };
    for (const auto& [widest, thousandths] : {
             Case{65536, 0},        // f/1
             Case{91750, 970},      // f/1.4: 970.84
             Case{131072, 1999},    // f/2: 1999.9999999999998
             Case{183501, 2970},    // f/2.8: 2970.86
             Case{524288, 5999},    // f/8: 5999.999999999999
             Case{62259, 0},        // f/0.95: negative
             Case{1, 0},            //
             Case{0, 0},            // no value
             Case{-65536, 0},       // no value
             Case{INT_MAX, 29999},  // 29999.9999999987
         }) {
        EXPECT_EQ(lens_tags::MaxApertureValue(widest), (Rational{thousandths, 1000})) << widest;
    }
}

TEST(FocalLength, IsInWholeThousandthsRounded) {
    struct Case {
        double millimetres;
        std::uint32_t thousandths;
    };
    for (const auto& [millimetres, thousandths] : {
             Case{50, 50000},
             Case{35.5, 35500},
             Case{0.00025, 0},
             Case{0.00075, 1},
             Case{0, 0},
             Case{-50, 0},
             Case{1e9, 4294967295},
             Case{std::numeric_limits<double>::infinity(), 4294967295},
             Case{std::nan(""), 0},
         }) {
        EXPECT_EQ(lens_tags::FocalLength(millimetres), (Rational{thousandths, 1000})) << millimetres;
    }
}

TEST(FocalLengthIn35mmFilm, IsTheFocalLengthTimesTheCropFactorRounded) {
    struct Case {
        Rational focal_length;
        std::uint16_t millimetres;
    };
    for (const auto& [focal_length, millimetres] : {
             Case{{28, 1}, 37},                   // 37.24
             Case{{50000, 1000}, 67},             // 66.5
             Case{{21, 1}, 28},                   // 27.93
             Case{{135, 1}, 180},                 // 179.55
             Case{{0, 1}, 0},                     //
             Case{{28, 0}, 0},                    // no value
             Case{{0, 0}, 0},                     // no value
             Case{{0xFFFFFFE4, 1}, 0},            // -28/1
             Case{{0xFFFFFFE4, 0xFFFFFFFF}, 37},  // -28/-1
             Case{{100000, 1}, 65535},            // beyond 16 bits
         }) {
        EXPECT_EQ(lens_tags::FocalLengthIn35mmFilm(focal_length), millimetres)
            << focal_length.numerator << "/" << focal_length.denominator;
    }
}

}  // namespace
