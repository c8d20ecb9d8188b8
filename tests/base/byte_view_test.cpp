// SPDX-License-Identifier: MIT
#include "base/byte_view.h"

#include <array>
#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

namespace {

constexpr std::array<std::uint8_t, 5> kBytes = {0x01, 0x02, 0x03, 0x04, 0x05};
constexpr std::uint64_t kHuge = std::numeric_limits<std::uint64_t>::max();

struct Range {
    std::uint64_t offset;
    std::uint64_t count;
    bool held;
};

constexpr std::array<Range, 12> kRanges = {{
    {0, 0, true},
    {0, 5, true},
    {0, 6, false},
    {2, 3, true},
    {2, 4, false},
    {4, 1, true},
    {5, 0, true},
    {5, 1, false},
    {6, 0, false},
    {0, kHuge, false},
    {kHuge, 0, false},
    {kHuge, 2, false},  // the sum would wrap to 1
}};

TEST(ByteView, HoldsOnlyRangesThatLieInside) {
    const ByteView view(kBytes);
    for (const auto& [offset, count, held] : kRanges) {
        EXPECT_EQ(view.Holds(offset, count), held) << count << " at " << offset;
        EXPECT_EQ(view.Bytes(offset, count).size(), held ? count : 0) << count << " at " << offset;
    }
}

TEST(ByteView, BytesBeginAtTheOffset) {
    const auto bytes = ByteView(kBytes).Bytes(2, 3);
    ASSERT_EQ(bytes.size(), 3U);
    EXPECT_EQ(bytes.front(), 0x03);
    EXPECT_EQ(bytes.back(), 0x05);
}

TEST(ByteView, GetReadsInEitherByteOrder) {
    const ByteView view(kBytes);
    EXPECT_EQ(view.Get<std::uint16_t>(1, ByteOrder::kLittleEndian), 0x0302);
    EXPECT_EQ(view.Get<std::uint16_t>(1, ByteOrder::kBigEndian), 0x0203);
    EXPECT_EQ(view.Get<std::uint32_t>(1, ByteOrder::kLittleEndian), 0x05040302U);
    EXPECT_EQ(view.Get<std::uint32_t>(1, ByteOrder::kBigEndian), 0x02030405U);
}

TEST(ByteView, GetGivesZeroForAnIncompleteNumber) {
    const ByteView view(kBytes);
    EXPECT_EQ(view.Get<std::uint16_t>(4, ByteOrder::kLittleEndian), 0);
    EXPECT_EQ(view.Get<std::uint32_t>(2, ByteOrder::kBigEndian), 0U);
    EXPECT_EQ(view.Get<std::uint8_t>(kHuge, ByteOrder::kLittleEndian), 0);
}

TEST(ByteView, ANewOneIsEmpty) {
    EXPECT_EQ(ByteView().size(), 0U);
    EXPECT_TRUE(ByteView().Holds(0, 0));
    EXPECT_FALSE(ByteView().Holds(0, 1));
}

}  // namespace
