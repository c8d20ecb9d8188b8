// SPDX-License-Identifier: MIT
#include "base/byte_order.h"

#include <array>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

namespace {

constexpr std::array<std::uint8_t, 9> kBytes = {0x01, 0x82, 0x03, 0x84, 0x05, 0x86, 0x07, 0x88, 0x09};

TEST(ByteOrder, LittleTakesTheLowByteFirst) {
    EXPECT_EQ(byte_order::GetLittle<std::uint8_t>(kBytes), 0x01);
    EXPECT_EQ(byte_order::GetLittle<std::uint16_t>(kBytes), 0x8201);
    EXPECT_EQ(byte_order::GetLittle<std::uint32_t>(kBytes), 0x84038201U);
    EXPECT_EQ(byte_order::GetLittle<std::uint64_t>(kBytes), 0x8807860584038201U);
}

TEST(ByteOrder, BigTakesTheHighByteFirst) {
    EXPECT_EQ(byte_order::GetBig<std::uint8_t>(kBytes), 0x01);
    EXPECT_EQ(byte_order::GetBig<std::uint16_t>(kBytes), 0x0182);
    EXPECT_EQ(byte_order::GetBig<std::uint32_t>(kBytes), 0x01820384U);
    EXPECT_EQ(byte_order::GetBig<std::uint64_t>(kBytes), 0x0182038405860788U);
}

TEST(ByteOrder, PutWritesLowByteFirstAndOnlyTheBytesOfItsType) {
    std::array<std::uint8_t, 6> bytes = {9, 9, 9, 9, 9, 9};
    byte_order::PutLittle(bytes, std::uint32_t{0x84038201});
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 6>{0x01, 0x82, 0x03, 0x84, 9, 9}));
    byte_order::PutLittle(bytes, std::uint16_t{0xABCD});
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 6>{0xCD, 0xAB, 0x03, 0x84, 9, 9}));
}

TEST(ByteOrder, NegativeNumbersAreWrittenInTwosComplement) {
    std::array<std::uint8_t, 4> bytes = {};
    byte_order::PutLittle(bytes, std::int32_t{-2});
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 4>{0xFE, 0xFF, 0xFF, 0xFF}));
}

TEST(ByteOrder, AppendKeepsWhatIsThere) {
    std::vector<std::uint8_t> bytes = {7};
    byte_order::AppendLittle(bytes, std::uint16_t{0x0102});
    byte_order::AppendLittle(bytes, std::int16_t{-1});
    byte_order::AppendLittle(bytes, std::uint8_t{5});
    EXPECT_EQ(bytes, (std::vector<std::uint8_t>{7, 2, 1, 0xFF, 0xFF, 5}));
}

}  // namespace
