// SPDX-License-Identifier: MIT
#include "sensor/split_levels.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "tests/sensor/sensor_oracle.h"
#include "tests/sensor/versions.h"

namespace {

using oracle::Frame;
using Floats = std::vector<float>;
using Pixels = std::vector<std::uint16_t>;

Dither Seeded(unsigned int seed) {
    std::srand(seed);
    return {};
}

Pixels Subtracted(Frame frame, const Floats& levels, unsigned int seed, InstructionSet version) {
    Dither dither = Seeded(seed);
    SplitLevels::Of(levels).value().SubtractFrom(frame.pixels, dither, version);
    return frame.pixels;
}

/// Numbers from 0 to below `end`, in steps of 1/`steps`.
Floats RandomLevels(int columns, std::uint32_t seed, std::uint32_t end, std::uint32_t steps) {
    std::mt19937 engine(seed);
    Floats levels;
    for (int x = 0; x < columns; ++x) {
        levels.push_back(static_cast<float>(engine() % (std::uint64_t{end} * steps)) /
                         static_cast<float>(steps));
    }
    return levels;
}

TEST(SplitLevels, AreForLevelsThatFitInto16Bits) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    EXPECT_FALSE(SplitLevels::Of({}));
    for (const float level : {-0.25F, -1e-30F, 65536.0F, 1e9F, infinity, -infinity, std::nanf("")}) {
        EXPECT_FALSE(SplitLevels::Of(Floats{1, level, 2})) << level;
    }
    for (const float level : {0.0F, -0.0F, 1e-30F, 65535.996F}) {
        EXPECT_TRUE(SplitLevels::Of(Floats{1, level, 2})) << level;
    }
}

/// For levels below 256 in steps of 1/65536, the sum of level and random number is exact in single precision.
TEST(SplitLevels, EqualThePlainLoopWithTheSameRandomNumbers) {
    for (const int width : {1, 31, 32, 33, 70, 3920, 3968}) {
        const Floats levels = RandomLevels(width, 5, 256, 65536);
        Frame frame = oracle::RandomFrame(width, 7, 6, 0, 400);
        frame.pixels.pop_back();  // an incomplete last row
        Dither dither = Seeded(9);
        const auto padded = (static_cast<std::size_t>(width) + 31) / 32 * 32;
        Floats random(padded);
        std::size_t i = 0;
        const Pixels plain = oracle::Dithered(frame, levels, [&] {
            const std::size_t x = i++ % static_cast<std::size_t>(width);
            if (x == 0) {
                dither.Fill(random);
            }
            return random[x];
        });
        for (const InstructionSet version : AvailableVersions()) {
            EXPECT_TRUE(Subtracted(frame, levels, 9, version) == plain) << width;
        }
    }
}

TEST(SplitLevels, GiveTheSameInEveryVersion) {
    for (const int width : {5, 100, 3920, 3968}) {
        const Floats levels = RandomLevels(width, 1, 65535, 3);
        const Frame frame = oracle::RandomFrame(width, 20, 2, 0, 65536);
        const Pixels baseline = Subtracted(frame, levels, 3, InstructionSet::kBaseline);
        for (const InstructionSet version : AvailableVersions()) {
            EXPECT_TRUE(Subtracted(frame, levels, 3, version) == baseline) << width;
        }
        EXPECT_FALSE(Subtracted(frame, levels, 4, InstructionSet::kBaseline) == baseline) << width;
    }
}

TEST(SplitLevels, SubtractWholeLevelsToTheUnit) {
    const Floats levels = RandomLevels(3968, 1, 65536, 1);
    const Frame frame = oracle::RandomFrame(3968, 20, 2, 0, 65536);
    const Pixels plain = oracle::Dithered(frame, levels, [] { return 0.0F; });
    for (const InstructionSet version : AvailableVersions()) {
        EXPECT_TRUE(Subtracted(frame, levels, 3, version) == plain);
    }
}

TEST(SplitLevels, RoundTheLargestLevelUpToZero) {
    constexpr float largest = 65535.996F;  // rounded up in 255 of 256 pixels
    const Frame frame = {32, 1000, Pixels(32000, 65535)};
    for (const InstructionSet version : AvailableVersions()) {
        int rounded_up = 0;
        for (const std::uint16_t pixel : Subtracted(frame, Floats(32, largest), 1, version)) {
            ASSERT_TRUE(pixel == 0 || pixel == 65535);
            rounded_up += pixel == 65535 ? 1 : 0;
        }
        EXPECT_NEAR(rounded_up, 31875, 70);
    }
}

/// The amounts that one way of dithering subtracts from rows of the same levels, minus the whole part of each
/// level. All statistics below may be off by six standard deviations; more is not due to chance.
class Corrections {
  public:
    static constexpr int kWidth = 3968;
    static constexpr int kHeight = 1000;
    static constexpr int kPixel = 30000;
    static constexpr double kDeviations = 6;

    /// Fractions of the columns in a random order, some of them finer than 1/65536.
    static Floats Levels() { return RandomLevels(kWidth, 8, 100, 999983); }
    static Frame Flat() {
        return {kWidth, kHeight, Pixels(static_cast<std::size_t>(kWidth) * kHeight, kPixel)};
    }

    explicit Corrections(const Pixels& corrected) : levels_(Levels()) {
        for (std::size_t i = 0; i < corrected.size(); ++i) {
            const std::size_t x = i % kWidth;
            const int offset = kPixel - corrected[i] - static_cast<int>(levels_[x]);
            ++histogram_.at(static_cast<std::size_t>(offset) + 1);
            columns_.at(x) += offset;
            const double deviation = offset - Fraction(x);
            sum_ += deviation;
            squares_ += deviation * deviation;
        }
    }

    double Fraction(std::size_t x) const {
        return static_cast<double>(levels_[x]) - std::floor(static_cast<double>(levels_[x]));
    }

    /// How often the amount is -1, 0, 1 and 2.
    const std::array<int, 4>& Histogram() const { return histogram_; }
    double Mean() const { return sum_ / (kWidth * kHeight); }
    double Variance() const { return squares_ / (kWidth * kHeight); }
    double ColumnMean(std::size_t x) const { return columns_.at(x) / kHeight; }

  private:
    Floats levels_;
    std::array<int, 4> histogram_ = {};
    std::array<double, kWidth> columns_ = {};
    double sum_ = 0;
    double squares_ = 0;
};

Corrections PlainCorrections() {
    std::mt19937 engine(17);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same numbers each time
    return Corrections(oracle::Dithered(Corrections::Flat(), Corrections::Levels(), [&] {
        constexpr float unit = 1.0F / 16777216;
        return static_cast<float>(engine() >> 8U) * unit;
    }));
}

Corrections FastCorrections(InstructionSet version) {
    return Corrections(Subtracted(Corrections::Flat(), Corrections::Levels(), 21, version));
}

TEST(SplitLevels, HaveTheDistributionOfThePlainLoop) {
    const Corrections plain = PlainCorrections();
    constexpr double pixels = static_cast<double>(Corrections::kWidth) * Corrections::kHeight;
    // The deviation of a difference between two ways; the variance of a pixel, averaged over all fractions,
    // is a sixth.
    const double deviation = std::sqrt(2.0 / 6 / pixels);
    for (const InstructionSet version : AvailableVersions()) {
        const Corrections fast = FastCorrections(version);
        EXPECT_NEAR(fast.Mean(), plain.Mean(), Corrections::kDeviations * deviation);
        EXPECT_NEAR(fast.Variance(), plain.Variance(), 0.001);
        EXPECT_EQ(fast.Histogram()[0], 0);
        EXPECT_EQ(fast.Histogram()[3], 0);
        for (const std::size_t offset : {std::size_t{1}, std::size_t{2}}) {
            EXPECT_NEAR(fast.Histogram().at(offset), plain.Histogram().at(offset),
                        Corrections::kDeviations * deviation * pixels);
        }
    }
}

TEST(SplitLevels, GiveEveryColumnTheMeanOfItsLevelLikeThePlainLoop) {
    const Corrections plain = PlainCorrections();
    for (const InstructionSet version : AvailableVersions()) {
        const Corrections fast = FastCorrections(version);
        for (std::size_t x = 0; x < Corrections::kWidth; ++x) {
            const double fraction = fast.Fraction(x);
            // A fraction near 0 or 1 is rounded the other way in very few pixels, too few for a normal
            // distribution.
            const double variance = fraction * (1 - fraction) / Corrections::kHeight;
            const double most = Corrections::kDeviations * std::sqrt(variance) + 0.003;
            ASSERT_NEAR(fast.ColumnMean(x), fraction, most) << x;
            ASSERT_NEAR(plain.ColumnMean(x), fraction, most) << x;
        }
    }
}

}  // namespace
