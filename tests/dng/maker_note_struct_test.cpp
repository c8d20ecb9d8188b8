// SPDX-License-Identifier: MIT
#include "dng/maker_note_struct.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "samples/maker_note.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using Pair = std::vector<std::int32_t>;

samples::Shot DistinctShot() {
    samples::Shot shot;
    shot.user_profile = 3;
    shot.serial_number = 3106091;
    shot.white_balance_setting = 5;
    shot.lens_code = 33;
    shot.frame_selector = 2;
    shot.external_light = {-98304, 65536};
    shot.measured_light = {-32768, 65537};
    shot.approximate_f_number = {367002, 65538};
    shot.temperature = -7;
    shot.colour_temperature = 5200;
    shot.uv_ir_correction = 1;
    shot.ccd_version = 11;
    shot.ccd_board_version = 12;
    shot.controller_version = 13;
    shot.m16c_version = 14;
    shot.image_number = 1234;
    return shot;
}

TEST(MakerNoteWalk, TakesNineteenValuesInTheCamerasOrder) {
    const Bytes bytes = samples::DngMakerNote(DistinctShot());
    const MakerNoteStruct note = DecodeMakerNote(ByteView(bytes));
    EXPECT_EQ(note.entry_count, 15);
    EXPECT_EQ(note.user_profile, 3U);
    EXPECT_EQ(note.serial_number, 3106091U);
    EXPECT_EQ(note.white_balance, 5);
    EXPECT_EQ(note.lens, 134U);
    // The three pairs begin two bytes after the 8 + 2 + 15 * 12 + 4 bytes of header and IFD.
    EXPECT_EQ(note.external_brightness_offset, 196U);
    EXPECT_EQ(note.external_brightness, (Pair{-98304, 65536}));
    EXPECT_EQ(note.measured_light_offset, 204U);
    EXPECT_EQ(note.measured_light, (Pair{-32768, 65537}));
    EXPECT_EQ(note.approximate_f_number_offset, 212U);
    EXPECT_EQ(note.approximate_f_number, (Pair{367002, 65538}));
    EXPECT_EQ(note.further, (std::array<std::uint32_t, 8>{4294967289, 5200, 1, 11, 12, 13, 14, 1234}));
}

/// Expects that the three pairs in `bytes` are those of DistinctShot().
void ExpectDistinctPairs(const Bytes& bytes) {
    const MakerNoteStruct note = DecodeMakerNote(ByteView(bytes));
    EXPECT_EQ(note.external_brightness, (Pair{-98304, 65536}));
    EXPECT_EQ(note.measured_light, (Pair{-32768, 65537}));
    EXPECT_EQ(note.approximate_f_number, (Pair{367002, 65538}));
}

TEST(MakerNoteWalk, FindsThePairsWithOffsetsFromEitherBase) {
    for (const std::uint32_t base : {0U, 8U}) {
        for (const bool gap : {true, false}) {
            SCOPED_TRACE(base);
            SCOPED_TRACE(gap);
            ExpectDistinctPairs(samples::DngMakerNote(DistinctShot(), {.base = base, .gap = gap}));
        }
    }
}

/// A complete note with these offsets. Each LONG after its table is its own position.
MakerNoteStruct WithOffsets(std::array<std::uint32_t, 3> offsets) {
    constexpr std::size_t table_end = 194;
    auto entries = samples::DngMakerNoteEntries({});
    for (std::size_t i = 0; i < offsets.size(); ++i) {
        entries.at(4 + i).raw_field = offsets.at(i);
    }
    Bytes bytes = samples::MakerNote(entries);
    bytes.resize(table_end);
    for (std::uint32_t position = table_end; position < 400; position += 4) {
        samples::AppendNumber(bytes, ByteOrder::kLittleEndian, position, 4);
    }
    return DecodeMakerNote(ByteView(bytes));
}

TEST(MakerNoteWalk, CountsFromTheFirstByteOnlyIfAllOffsetsPointPastTheTable) {
    const MakerNoteStruct past = WithOffsets({198, 194, 210});
    EXPECT_EQ(past.external_brightness, (Pair{198, 202}));
    EXPECT_EQ(past.measured_light, (Pair{194, 198}));
    EXPECT_EQ(past.approximate_f_number, (Pair{210, 214}));
    // One of the three points into the table, so all of them count from byte 8.
    EXPECT_EQ(WithOffsets({186, 202, 210}).external_brightness, (Pair{194, 198}));
    EXPECT_EQ(WithOffsets({186, 202, 210}).approximate_f_number, (Pair{218, 222}));
    EXPECT_EQ(WithOffsets({193, 202, 210}).measured_light, (Pair{210, 214}));
    EXPECT_EQ(WithOffsets({202, 193, 210}).external_brightness, (Pair{210, 214}));
    EXPECT_EQ(WithOffsets({202, 210, 193}).external_brightness, (Pair{210, 214}));
}

TEST(MakerNoteWalk, OffsetsThatWrapAreOutside) {
    const MakerNoteStruct note = WithOffsets({0xFFFFFFFF, 0xFFFFFFF8, 0xFFFFFFF0});
    EXPECT_EQ(note.external_brightness, (Pair{0, 0}));
    EXPECT_EQ(note.measured_light, (Pair{0, 0}));
    EXPECT_EQ(WithOffsets({0xFFFFFFF8, 0xFFFFFFFF, 194}).external_brightness, (Pair{0, 0}));
    EXPECT_EQ(WithOffsets({0xFFFFFFF8, 0xFFFFFFFF, 186}).external_brightness, (Pair{0, 0}));
}

TEST(MakerNoteWalk, ReadsEntriesByPositionRegardlessOfTagTypeAndCount) {
    Bytes bytes = samples::DngMakerNote(DistinctShot());
    for (std::size_t entry = 10; entry < 10 + 15 * 12; entry += 12) {
        std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(entry), 8, std::uint8_t{0xEE});
    }
    const MakerNoteStruct note = DecodeMakerNote(ByteView(bytes));
    EXPECT_EQ(note.serial_number, 3106091U);
    EXPECT_EQ(note.measured_light, (Pair{-32768, 65537}));
    EXPECT_EQ(note.further.back(), 1234U);
}

TEST(MakerNoteWalk, TakesTheSixUpperBitsOfTheLensByteForTheCode) {
    MakerNoteStruct note;
    for (const auto& [lens, code] :
         {std::pair{134U, 33}, {0xFFU, 63}, {3U, 0}, {4U, 1}, {0xFFFFFF00U, 0}, {0x12345687U, 33}}) {
        note.lens = lens;
        EXPECT_EQ(note.LensCode(), code) << lens;
    }
}

TEST(MakerNoteWalk, GivesZeroForValuesOutsideTheNote) {
    const Bytes whole = samples::DngMakerNote(DistinctShot());
    // The note ends in the serial number's value field, which is at 8 + 2 + 12 + 8.
    const MakerNoteStruct cut = DecodeMakerNote(ByteView({whole.data(), 32}));
    EXPECT_EQ(cut.user_profile, 3U);
    EXPECT_EQ(cut.serial_number, 0U);
    EXPECT_EQ(cut.LensCode(), 0);
    EXPECT_EQ(cut.external_brightness, (Pair{0, 0}));
    EXPECT_EQ(cut.approximate_f_number, (Pair{0, 0}));
    EXPECT_EQ(cut.further, (std::array<std::uint32_t, 8>{}));

    const MakerNoteStruct empty = DecodeMakerNote(ByteView());
    EXPECT_EQ(empty.entry_count, 0);
    EXPECT_EQ(empty.measured_light, (Pair{0, 0}));
}

TEST(MakerNoteWalk, GivesZerosForAPairWhoseOffsetPointsOutside) {
    Bytes bytes = samples::DngMakerNote(DistinctShot());
    const std::size_t field = 8 + 2 + 4 * 12 + 8;  // of 0x0311
    for (const std::uint8_t high_byte : {std::uint8_t{0x7F}, std::uint8_t{0xFF}}) {
        bytes[field + 3] = high_byte;
        const MakerNoteStruct note = DecodeMakerNote(ByteView(bytes));
        EXPECT_EQ(note.external_brightness, (Pair{0, 0}));
        EXPECT_EQ(note.measured_light, (Pair{-32768, 65537}));
    }
}

TEST(MakerNoteWalk, IsSafeAtEveryLength) {
    const Bytes whole = samples::DngMakerNote(DistinctShot());
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        const Bytes bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        const MakerNoteStruct note = DecodeMakerNote(ByteView(bytes));
        EXPECT_EQ(note.external_brightness.size(), 2U);
        EXPECT_EQ(note.serial_number, size < 34 ? 0U : 3106091U) << size;
    }
}

}  // namespace
