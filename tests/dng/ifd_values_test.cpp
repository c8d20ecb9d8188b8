// SPDX-License-Identifier: MIT
#include "dng/ifd_values.h"

#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dng/dnglib.h"

namespace {

class IFDValues : public testing::Test {
  protected:
    DNGlib dng_{nullptr, nullptr};
    DNGlib::IFD ifd_;
};

TEST_F(IFDValues, GiveAllValuesOfATag) {
    constexpr std::array<unsigned short, 3> shorts = {1, 513, 65535};
    constexpr std::array<unsigned int, 2> longs = {3936, 4294967295};
    dng_.AddIFDTag(&ifd_, 258, shorts.data(), 3U);
    dng_.AddIFDTag(&ifd_, 273, longs.data(), 2U);
    EXPECT_EQ(ifd_values::Shorts(ifd_, 258), (std::vector<std::uint16_t>{1, 513, 65535}));
    EXPECT_EQ(ifd_values::Longs(ifd_, 273), (std::vector<std::uint32_t>{3936, 4294967295}));
    EXPECT_EQ(ifd_values::Number(ifd_, 258), 1U);
    EXPECT_EQ(ifd_values::Number(ifd_, 273), 3936U);
}

TEST_F(IFDValues, AreNoneForAMissingTag) {
    EXPECT_TRUE(ifd_values::Shorts(ifd_, 258).empty());
    EXPECT_TRUE(ifd_values::Longs(ifd_, 273).empty());
    EXPECT_FALSE(ifd_values::Number(ifd_, 256).has_value());
    EXPECT_FALSE(ifd_values::FirstRational(ifd_, 33434).has_value());
    EXPECT_EQ(ifd_values::Text(ifd_, 271), "");
}

TEST_F(IFDValues, AreNoneForATagOfAnotherType) {
    dng_.AddIFDTag(&ifd_, 258, 8U);
    dng_.AddIFDTag(&ifd_, 273, static_cast<unsigned short>(8));
    dng_.AddIFDTag(&ifd_, 256, -1);
    dng_.AddIFDTag(&ifd_, 33434, 1U);
    EXPECT_TRUE(ifd_values::Shorts(ifd_, 258).empty());
    EXPECT_TRUE(ifd_values::Longs(ifd_, 273).empty());
    EXPECT_FALSE(ifd_values::Number(ifd_, 256).has_value());
    EXPECT_FALSE(ifd_values::FirstRational(ifd_, 33434).has_value());
}

TEST_F(IFDValues, AreNoneForATagWithoutValues) {
    dng_.AddIFDTag(&ifd_, 258, nullptr, 3, 0U);
    dng_.AddIFDTag(&ifd_, 273, nullptr, 4, 0U);
    dng_.AddIFDTag(&ifd_, 33434, nullptr, 5, 0U);
    dng_.AddIFDTag(&ifd_, 37380, nullptr, 10, 0U);
    EXPECT_FALSE(ifd_values::Number(ifd_, 258).has_value());
    EXPECT_TRUE(ifd_values::Longs(ifd_, 273).empty());
    EXPECT_FALSE(ifd_values::FirstRational(ifd_, 33434).has_value());
    EXPECT_FALSE(ifd_values::FirstRational(ifd_, 37380).has_value());
}

TEST_F(IFDValues, TakeTheFirstOfSeveralRationalsAsSigned) {
    constexpr std::array numerators = {-110, 16};
    constexpr std::array denominators = {207, 125};
    dng_.AddIFDTag(&ifd_, 50721, numerators.data(), denominators.data(), 2U);
    dng_.AddIFDTag(&ifd_, 33434, 4294967295U, 250U);
    const auto signed_value = ifd_values::FirstRational(ifd_, 50721).value_or(SRational{});
    EXPECT_EQ(signed_value.numerator, -110);
    EXPECT_EQ(signed_value.denominator, 207);
    const auto unsigned_value = ifd_values::FirstRational(ifd_, 33434).value_or(SRational{});
    EXPECT_EQ(unsigned_value.numerator, -1);
    EXPECT_EQ(unsigned_value.denominator, 250);
}

TEST_F(IFDValues, GiveTextByteForByte) {
    constexpr std::array<unsigned char, 3> bytes = {0, 'a', 0};
    dng_.AddIFDTag(&ifd_, 271, std::string("Leica"));
    dng_.AddIFDTag(&ifd_, 37500, bytes.data(), 7, 3U);
    EXPECT_EQ(ifd_values::Text(ifd_, 271), std::string("Leica\0", 6));
    EXPECT_EQ(ifd_values::Text(ifd_, 37500), std::string("\0a\0", 3));
}

}  // namespace
