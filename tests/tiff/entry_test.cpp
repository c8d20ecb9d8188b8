// SPDX-License-Identifier: MIT
#include "tiff/entry.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include <gtest/gtest.h>

namespace {

using Bytes = std::vector<std::uint8_t>;

/// Tag, type, count and value field of one entry, byte for byte, low byte first.
constexpr std::array<std::uint8_t, 12> kLittle = {0x12, 0x01, 3, 0, 2, 0, 0, 0, 0x04, 0x03, 0x02, 0x01};
/// The same fields, high byte first.
constexpr std::array<std::uint8_t, 12> kBig = {0x01, 0x12, 0, 3, 0, 0, 0, 2, 0x01, 0x02, 0x03, 0x04};

tiff::Entry EntryOf(std::span<const std::uint8_t> bytes, ByteOrder order) {
    return tiff::ReadEntry({ByteView(bytes), 0, order}, 0).value_or(tiff::Entry());
}

TEST(TiffEntry, IsReadInEitherByteOrder) {
    for (const auto& entry :
         {EntryOf(kLittle, ByteOrder::kLittleEndian), EntryOf(kBig, ByteOrder::kBigEndian)}) {
        EXPECT_EQ(entry.tag, 274);
        EXPECT_EQ(entry.type, 3);
        EXPECT_EQ(entry.count, 2U);
        EXPECT_EQ(entry.Offset(), 0x01020304U);
    }
}

TEST(TiffEntry, GivesTheFirstNumberOfItsValueField) {
    const tiff::Entry little = EntryOf(kLittle, ByteOrder::kLittleEndian);
    EXPECT_EQ(little.First<std::uint8_t>(), 0x04);
    EXPECT_EQ(little.First<std::uint16_t>(), 0x0304);
    const tiff::Entry big = EntryOf(kBig, ByteOrder::kBigEndian);
    EXPECT_EQ(big.First<std::uint8_t>(), 0x01);
    EXPECT_EQ(big.First<std::uint16_t>(), 0x0102);
}

TEST(TiffEntry, IsReadOnlyIfComplete) {
    Bytes bytes(5);
    bytes.insert(bytes.end(), kLittle.begin(), kLittle.end());
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
        const tiff::Block block = {ByteView(std::span(bytes).first(size))};
        EXPECT_EQ(tiff::ReadEntry(block, 5).has_value(), size == 17) << size;
    }
    EXPECT_FALSE(tiff::ReadEntry({ByteView(bytes)}, 6).has_value());
    EXPECT_FALSE(tiff::ReadEntry({ByteView(bytes)}, 0xFFFFFFFFFFFFFFFF).has_value());
}

TEST(TiffEntry, KnowsTheLengthOfItsValueInMoreThan32Bits) {
    EXPECT_EQ((tiff::Entry{.type = 3, .count = 2}).ValueSize(), 4U);
    EXPECT_EQ((tiff::Entry{.type = 10, .count = 0xFFFFFFFF}).ValueSize(), 34359738360U);
    for (const std::uint16_t type : std::to_array<std::uint16_t>({0, 11, 12, 13, 0xFFFF})) {
        EXPECT_EQ((tiff::Entry{.type = type, .count = 3}).ValueSize(), 0U) << type;
    }
}

TEST(TiffEntry, FollowsTheCountOfItsIFDAndTheEntriesBeforeIt) {
    EXPECT_EQ(tiff::EntryPosition(8, 0), 10U);
    EXPECT_EQ(tiff::EntryPosition(8, 65535), 786430U);
    EXPECT_EQ(tiff::IFDSize(0), 6U);
    EXPECT_EQ(tiff::IFDSize(65535), 786426U);
}

/// Twelve bytes, 0 to 11.
Bytes Counted() {
    return {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
}

/// The value of `size` bytes at `offset` from byte 2 of Counted(); std::nullopt if ReadValue rejects it.
std::optional<Bytes> ValueAt(std::uint32_t offset, std::uint64_t size) {
    const Bytes bytes = Counted();
    tiff::Entry entry;
    byte_order::PutLittle(std::span(entry.field), offset);
    const auto value = tiff::ReadValue({ByteView(bytes), 2}, entry, size);
    return value ? std::optional(Bytes(value->get().begin(), value->get().end())) : std::nullopt;
}

TEST(TiffValue, OfUpTo4BytesIsInTheEntry) {
    EXPECT_EQ(ValueAt(0x44332211, 0), Bytes());
    EXPECT_EQ(ValueAt(0x44332211, 1), Bytes{0x11});
    EXPECT_EQ(ValueAt(0x44332211, 4), (Bytes{0x11, 0x22, 0x33, 0x44}));
}

TEST(TiffValue, OfMoreThan4BytesIsAtItsOffsetFromTheBase) {
    EXPECT_EQ(ValueAt(0, 5), (Bytes{2, 3, 4, 5, 6}));
    EXPECT_EQ(ValueAt(5, 5), (Bytes{7, 8, 9, 10, 11}));
}

TEST(TiffValue, IsReadOnlyIfComplete) {
    EXPECT_EQ(ValueAt(6, 5), std::nullopt);
    EXPECT_EQ(ValueAt(0, 11), std::nullopt);
    EXPECT_EQ(ValueAt(0xFFFFFFFF, 5), std::nullopt);
    EXPECT_EQ(ValueAt(0xFFFFFFFE, 8), std::nullopt);  // 2^32 bytes after the base
    EXPECT_EQ(ValueAt(0, 0x800000000), std::nullopt);
}

TEST(TiffValue, InTheEntryOfABigEndianFileComesOutReversed) {
    const tiff::Entry entry = EntryOf(kBig, ByteOrder::kBigEndian);
    const tiff::ValueBytes value(entry, 3);
    EXPECT_EQ(Bytes(value.get().begin(), value.get().end()), (Bytes{4, 3, 2}));
}

}  // namespace
