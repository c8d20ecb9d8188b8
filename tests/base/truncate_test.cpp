// SPDX-License-Identifier: MIT
#include "base/truncate.h"

#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

TEST(Truncate, CutsTowardZero) {
    EXPECT_EQ(Truncate<std::int32_t>(2.999), 2);
    EXPECT_EQ(Truncate<std::int32_t>(-2.999), -2);
    EXPECT_EQ(Truncate<std::int32_t>(-0.5), 0);
    EXPECT_EQ(Truncate<std::uint16_t>(0.999), 0);
}

TEST(Truncate, TheEndsOfTheRangeAreKept) {
    EXPECT_EQ(Truncate<std::int32_t>(2147483647.0), 2147483647);
    EXPECT_EQ(Truncate<std::int32_t>(2147483646.9), 2147483646);
    EXPECT_EQ(Truncate<std::int32_t>(-2147483648.0), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(Truncate<std::int32_t>(-2147483647.9), -2147483647);
    EXPECT_EQ(Truncate<std::uint16_t>(65535.0), 65535);
    EXPECT_EQ(Truncate<std::uint32_t>(4294967295.0), 4294967295U);
}

TEST(Truncate, ValuesBeyondTheRangeGiveItsEnd) {
    for (const double value : {2147483648.0, 1e300, kInfinity}) {
        EXPECT_EQ(Truncate<std::int32_t>(value), 2147483647) << value;
        EXPECT_EQ(Truncate<std::uint16_t>(value), 65535) << value;
    }
    for (const double value : {-2147483649.0, -1e300, -kInfinity}) {
        EXPECT_EQ(Truncate<std::int32_t>(value), std::numeric_limits<std::int32_t>::min()) << value;
        EXPECT_EQ(Truncate<std::uint16_t>(value), 0) << value;
    }
    EXPECT_EQ(Truncate<std::uint32_t>(-0.5), 0U);
}

TEST(Truncate, NotANumberGivesZero) {
    EXPECT_EQ(Truncate<std::int32_t>(kNotANumber), 0);
    EXPECT_EQ(Truncate<std::uint16_t>(-kNotANumber), 0);
}

}  // namespace
