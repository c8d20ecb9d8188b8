// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "sensor/sensdb.h"
#include "sensor/sensorfixtools.h"
#include "tests/sensor/sensor_oracle.h"

namespace {

using oracle::Frame;
using Floats = std::vector<float>;

constexpr unsigned int kSerial = 3106091;
constexpr int kFull = 3968;
constexpr int kCropped = 3920;

std::vector<std::uint16_t> Fixed(Frame frame, const Floats& levels, std::uint16_t iso, bool estimate) {
    sensdb sensors("");
    sensors.Camera(kSerial).LevelCorrection = levels;
    EXPECT_EQ(sensorfixtools().fixBlackLevels(kSerial, &frame.pixels, iso, frame.width, frame.height,
                                              frame.width * frame.height, &sensors, estimate),
              0);
    return frame.pixels;
}

Frame Flat(int width, int height, std::uint16_t pixel) {
    const std::size_t pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    return {width, height, std::vector<std::uint16_t>(pixels, pixel)};
}

/// Level 4 x at column x: neighbouring levels differ by more than the dither.
Floats Ramp(int columns) {
    Floats levels;
    for (int x = 0; x < columns; ++x) {
        levels.push_back(static_cast<float>(4 * x));
    }
    return levels;
}

/// The rest of `pixel` after the low 16 bits of the whole part of `level` are subtracted.
int Rest(int pixel, std::int64_t level) {
    const auto low_bits = static_cast<int>(level & 0xFFFF);
    return low_bits < pixel ? pixel - low_bits : 0;
}

TEST(DarkFieldFix, SubtractsTheLevelOfEachColumn) {
    // A cropped frame begins at level 23. When a dither just below 1 is added to a large level, it is rounded
    // to 1.
    for (const auto& [width, first] : {std::pair(kFull, 0), std::pair(kCropped, 23)}) {
        const auto fixed = Fixed(Flat(width, 3, 20000), Ramp(kFull), 160, false);
        for (std::size_t i = 0; i < fixed.size(); ++i) {
            const int level = 4 * (first + static_cast<int>(i) % width);
            ASSERT_TRUE(fixed[i] == 20000 - level || fixed[i] == 20000 - level - 1) << width << ", " << i;
        }
    }
}

TEST(DarkFieldFix, ScalesTheLevelsByTheSpeed) {
    struct Case {
        std::uint16_t iso;
        int gain;
    };
    for (const Case& c :
         {Case{160, 1}, Case{320, 2}, Case{400, 1}, Case{640, 4}, Case{1250, 8}, Case{2500, 16}}) {
        EXPECT_NEAR(Fixed(Flat(kFull, 1, 500), Floats(kFull, 10), c.iso, false)[7], 499.5 - 10 * c.gain, 0.5)
            << c.iso;
        EXPECT_EQ(Fixed(Flat(8, 2, 50), Floats(8, 10), c.iso, true)[7],
                  static_cast<std::uint16_t>(50 - 10 * c.gain))
            << c.iso;
    }
}

TEST(DarkFieldFix, StopsAtZeroOnlyWhenItIsDithered) {
    for (const auto& [pixel, dithered, estimated] :
         std::vector<std::array<std::uint16_t, 3>>{{9, 0, 65535}, {10, 0, 0}, {11, 1, 1}}) {
        EXPECT_EQ(Fixed(Flat(kFull, 1, pixel), Floats(kFull, 10), 160, false)[0], dithered);
        EXPECT_EQ(Fixed(Flat(8, 2, pixel), Floats(8, 10), 160, true)[0], estimated);
    }
}

TEST(DarkFieldFix, TruncatesLevelAndDitherTogetherToSixteenBits) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    const Floats special = {0,        0.25F,     3.75F,
                            100,      100.5F,    -0.25F,
                            -0.75F,   -1,        -3.5F,
                            -100,     -65536.5F, 16383,
                            40000,    65535,     65535.5F,
                            65536,    70000,     1e6F,
                            2e9F,     2.1474e9F, 3e9F,
                            -3e9F,    1e30F,     -1e30F,
                            infinity, -infinity, std::numeric_limits<float>::quiet_NaN()};
    Floats levels(kFull);
    for (std::size_t x = 0; x < levels.size(); ++x) {
        levels[x] = special[x % special.size()];
    }
    constexpr float largest_random = 0.99999994F;  // the largest float below 1
    for (const auto& [width, first] :
         {std::pair(kFull, std::size_t{0}), std::pair(kCropped, std::size_t{23})}) {
        for (const auto& [iso, gain] :
             {std::pair(std::uint16_t{160}, 1.0F), std::pair(std::uint16_t{2500}, 16.0F)}) {
            const Frame frame = oracle::RandomFrame(width, 20, 1, 0, 65536);
            const auto fixed = Fixed(frame, levels, iso, false);
            for (std::size_t i = 0; i < fixed.size(); ++i) {
                // A level too large for an int is not subtracted.
                const float scaled = levels[first + i % static_cast<std::size_t>(width)] * gain;
                const float level = std::abs(scaled) < 2147483648.0F ? scaled : 0;
                const int pixel = frame.pixels[i];
                const int least = Rest(pixel, static_cast<std::int64_t>(level));
                const int most = Rest(pixel, static_cast<std::int64_t>(level + largest_random));
                ASSERT_TRUE(fixed[i] == least || fixed[i] == most)
                    << pixel << " - " << level << " is " << fixed[i];
            }
        }
    }
}

/// The amounts that the correction subtracts, minus 20, from a full frame with the levels 20 + 1/16, 20 +
/// 3/16, ... 20 + 15/16.
class DitheredFrame {
  public:
    static constexpr int kHeight = 2646;

    /// With `beyond_16_bits`, one level is larger by 65536, which changes no pixel.
    explicit DitheredFrame(bool beyond_16_bits) {
        Floats levels(kFull);
        for (std::size_t x = 0; x < levels.size(); ++x) {
            levels[x] = 20 + Fraction(x);
        }
        levels[2] += beyond_16_bits ? 65536.0F : 0.0F;
        for (const std::uint16_t pixel : Fixed(Flat(kFull, kHeight, 1000), levels, 160, false)) {
            offsets_.push_back(static_cast<std::int8_t>(980 - pixel));
        }
    }

    static float Fraction(std::size_t x) { return static_cast<float>(2 * (x % 8) + 1) / 16; }

    int Offset(std::size_t x, std::size_t y) const { return offsets_[y * kFull + x]; }
    /// The difference between the subtracted amount and its mean.
    double Deviation(std::size_t x, std::size_t y) const {
        return Offset(x, y) - static_cast<double>(Fraction(x));
    }

  private:
    std::vector<std::int8_t> offsets_;
};

/// A statistic that is off by more than six standard deviations is not due to chance.
constexpr double kDeviations = 6;

class DarkFieldDither : public testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(LevelBeyond16Bits, DarkFieldDither, testing::Bool());

TEST_P(DarkFieldDither, MakesEveryColumnsMeanItsLevel) {
    const DitheredFrame frame(GetParam());
    for (std::size_t x = 0; x < kFull; ++x) {
        double sum = 0;
        for (std::size_t y = 0; y < DitheredFrame::kHeight; ++y) {
            const int offset = frame.Offset(x, y);
            ASSERT_TRUE(offset == 0 || offset == 1);
            sum += offset;
        }
        const auto fraction = static_cast<double>(DitheredFrame::Fraction(x));
        const double variance = fraction * (1 - fraction) / DitheredFrame::kHeight;
        EXPECT_NEAR(sum / DitheredFrame::kHeight, fraction, kDeviations * std::sqrt(variance)) << x;
    }
}

TEST_P(DarkFieldDither, LeavesNoRowsAndNoPattern) {
    const DitheredFrame frame(GetParam());
    constexpr double variance = 43.0 / 256;  // the mean of fraction * (1 - fraction)
    double total_squares = 0;
    double to_the_right = 0;
    double below = 0;
    for (std::size_t y = 0; y < DitheredFrame::kHeight; ++y) {
        double row = 0;
        for (std::size_t x = 0; x < kFull; ++x) {
            const double here = frame.Deviation(x, y);
            row += here;
            total_squares += here * here;
            to_the_right += x + 1 < kFull ? here * frame.Deviation(x + 1, y) : 0;
            below += y + 1 < DitheredFrame::kHeight ? here * frame.Deviation(x, y + 1) : 0;
        }
        EXPECT_NEAR(row / kFull, 0, kDeviations * std::sqrt(variance / kFull)) << y;
    }
    constexpr double pixels = double{kFull} * DitheredFrame::kHeight;
    EXPECT_NEAR(total_squares / pixels, variance, 0.001);
    EXPECT_NEAR(to_the_right / pixels, 0, kDeviations * variance / std::sqrt(pixels));
    EXPECT_NEAR(below / pixels, 0, kDeviations * variance / std::sqrt(pixels));
}

TEST(DarkFieldFix, LeavesOtherWidthsWithoutEstimation) {
    for (const int width : {1, 8, 3919, 3921, 3967, 3969}) {
        const Frame frame = oracle::RandomFrame(width, 2, 1, 0, 16384);
        EXPECT_EQ(Fixed(frame, Floats(4000, 10), 160, false), frame.pixels) << width;
    }
}

TEST(DarkFieldFix, NeedsALevelForEveryColumn) {
    struct Case {
        int width;
        int levels;
        bool estimate;
    };
    for (const Case& c : {Case{kFull, kFull, false}, Case{kCropped, 23 + kCropped, false},
                          Case{kFull, kFull, true}, Case{kCropped, kCropped, true}, Case{13, 13, true}}) {
        const Frame frame = Flat(c.width, 2, 50);
        SCOPED_TRACE(testing::Message() << c.width << (c.estimate ? " estimated" : ""));
        const auto levels = static_cast<std::size_t>(c.levels);
        EXPECT_LT(std::ranges::max(Fixed(frame, Floats(levels, 10), 160, c.estimate)), 50);
        EXPECT_EQ(Fixed(frame, Floats(levels - 1, 10), 160, c.estimate), frame.pixels);
        EXPECT_EQ(Fixed(frame, {}, 160, c.estimate), frame.pixels);
    }
}

TEST(DarkFieldFix, EstimatesRowsAndAppliesThoseOfTheRightHalfInReverse) {
    // Row offsets -2.5, 2.5, 7.5, -7.5 on the left and -5, 5, 15, -15 on the right.
    const Frame frame = {4,
                         4,
                         {10, 200, 20, 200,  //
                          30, 100, 60, 100,  //
                          40, 200, 80, 3,    //
                          50, 100, 70, 100}};
    EXPECT_EQ(Fixed(frame, Floats(4), 160, true),
              (std::vector<std::uint16_t>{12, 202, 35, 215,    //
                                          28, 98, 45, 85,      //
                                          33, 193, 75, 65534,  // 3 - 5 wraps
                                          57, 107, 75, 105}));
    // Level and offset are added before they are scaled and truncated: 2 x (0.25 - 2.5) is -4.5.
    const auto doubled = Fixed(frame, Floats(4, 0.25F), 320, true);
    EXPECT_EQ(doubled[0], 14);
    EXPECT_EQ(doubled[4], 25) << "30 - 2 x 2.75";
    EXPECT_EQ(doubled[15], 109) << "100 - 2 x -4.75";
}

TEST(DarkFieldFix, UsesTheFirstLevelsOfACroppedFrameWithEstimation) {
    const auto fixed = Fixed(Flat(kCropped, 2, 50), Ramp(kFull), 160, true);
    for (std::size_t x = 0; x < kCropped; ++x) {
        ASSERT_EQ(fixed[x], static_cast<std::uint16_t>(50 - 4 * static_cast<int>(x)));
    }
}

TEST(DarkFieldFix, LeavesPixelsWithoutAnEstimate) {
    const Frame frame = oracle::RandomFrame(16, 4, 1, 200, 1000);
    EXPECT_EQ(Fixed(frame, Floats(16, 10), 160, true), frame.pixels);
}

TEST(DarkFieldFix, EqualsThePlainLoopWithEstimation) {
    for (const int width : {4, 5, 6, 7, 10, 13, kCropped, kFull}) {
        const auto columns = static_cast<std::size_t>(width);
        Floats levels;
        for (const std::uint16_t value : oracle::RandomFrame(width, 1, 99, 0, 4096).pixels) {
            levels.push_back(static_cast<float>(value) / 100 - 10);
        }
        ASSERT_EQ(levels.size(), columns);
        for (const int height : {1, 2, 5, 12}) {
            for (std::uint32_t seed = 0; seed < 6; ++seed) {
                const Frame frame = oracle::RandomFrame(width, height, seed, 60, 70);
                EXPECT_TRUE(Fixed(frame, levels, 160, true) == oracle::WithoutDarkField(frame, levels, 1))
                    << width << " x " << height << ", seed " << seed;
                EXPECT_TRUE(Fixed(frame, levels, 1250, true) == oracle::WithoutDarkField(frame, levels, 8))
                    << width << " x " << height << ", seed " << seed << ", ISO 1250";
            }
        }
    }
}

}  // namespace
