// SPDX-License-Identifier: MIT
#include "samples/maker_note.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/byte_order.h"
#include "tiff/types.h"

namespace {

using byte_order::GetLittle;
using samples::kMakerNoteHeaderSize;

std::vector<std::uint16_t> TagsOf(const std::vector<samples::Entry>& entries) {
    std::vector<std::uint16_t> tags;
    tags.reserve(entries.size());
    for (const samples::Entry& entry : entries) {
        tags.push_back(entry.tag);
    }
    return tags;
}

/// The value field of entry number `place`.
std::uint32_t FieldAt(std::span<const std::uint8_t> note, std::size_t place) {
    const std::size_t entry = kMakerNoteHeaderSize + tiff::kCountSize + (tiff::kEntrySize * place);
    return GetLittle<std::uint32_t>(note.subspan(entry + tiff::kValueInEntry, tiff::kValueFieldSize));
}

std::int32_t SignedAt(std::span<const std::uint8_t> note, std::size_t position) {
    return static_cast<std::int32_t>(GetLittle<std::uint32_t>(note.subspan(position, 4)));
}

TEST(SampleMakerNote, DngHas15EntriesIn220Bytes) {
    const std::vector<std::uint8_t> note = samples::DngMakerNote({});
    EXPECT_EQ(note.size(), 220U);
    EXPECT_EQ(std::string(note.begin(), note.begin() + kMakerNoteHeaderSize), std::string("LEICA\0\0\0", 8));
    EXPECT_EQ(GetLittle<std::uint16_t>(std::span(note).subspan(kMakerNoteHeaderSize, 2)), 15);
    const std::vector<std::uint16_t> expected = {0x0302, 0x0303, 0x0304, 0x0310, 0x0311,
                                                 0x0312, 0x0313, 0x0320, 0x0321, 0x0325,
                                                 0x0330, 0x0331, 0x0332, 0x0333, 0x0340};
    EXPECT_EQ(TagsOf(samples::DngMakerNoteEntries({})), expected);
}

TEST(SampleMakerNote, JpegHas19Entries) {
    const std::vector<std::uint16_t> expected = {0x0300, 0x0302, 0x0303, 0x0304, 0x0310, 0x0311, 0x0312,
                                                 0x0313, 0x0320, 0x0321, 0x0322, 0x0323, 0x0324, 0x0325,
                                                 0x0330, 0x0331, 0x0332, 0x0333, 0x0340};
    EXPECT_EQ(TagsOf(samples::JpegMakerNoteEntries({})), expected);
    EXPECT_EQ(samples::JpegMakerNote({}).size(), 8U + 2 + (19 * 12) + 4 + (6 * 8) + 2);
}

samples::Shot Lit() {
    samples::Shot shot;
    shot.external_light = {-5, 7};
    return shot;
}

TEST(SampleMakerNote, OffsetsInDngsCountFromTheFirstByte) {
    const std::vector<std::uint8_t> note = samples::DngMakerNote(Lit());
    EXPECT_EQ(FieldAt(note, 4), 196U);
    EXPECT_EQ(SignedAt(note, 196), -5);
    EXPECT_EQ(SignedAt(note, 200), 7);
}

TEST(SampleMakerNote, OffsetsInJpegsCountFromTheEndOfTheHeader) {
    const std::vector<std::uint8_t> note = samples::JpegMakerNote(Lit());
    EXPECT_EQ(FieldAt(note, 5), 236U);
    EXPECT_EQ(SignedAt(note, 244), -5);
    EXPECT_EQ(SignedAt(note, 248), 7);
}

TEST(SampleMakerNote, TheGapMayFollowTheValues) {
    const std::vector<std::uint8_t> note = samples::DngMakerNote(Lit(), {.base = 8, .gap = false});
    EXPECT_EQ(note.size(), 220U);
    EXPECT_EQ(FieldAt(note, 4), 186U);
    EXPECT_EQ(SignedAt(note, 194), -5);
    EXPECT_EQ(note[218], 0);
    EXPECT_EQ(note[219], 0);
}

TEST(SampleMakerNote, LightValuesAreSignedInDngsAndUnsignedInJpegs) {
    const std::vector<samples::Entry> dng = samples::DngMakerNoteEntries({});
    const std::vector<samples::Entry> jpeg = samples::JpegMakerNoteEntries({});
    for (const std::uint16_t tag : {samples::note::kExternalLight, samples::note::kMeasuredLight}) {
        EXPECT_EQ(samples::Find(dng, tag)->type, tiff::kSRational);
        EXPECT_EQ(samples::Find(jpeg, tag)->type, tiff::kRational);
        EXPECT_EQ(samples::Find(dng, tag)->value, samples::Find(jpeg, tag)->value);
    }
}

TEST(SampleMakerNote, LensEntryHoldsCodeAndFrameSelector) {
    samples::Shot shot;
    shot.lens_code = 0x2A;
    shot.frame_selector = 1;
    EXPECT_EQ(FieldAt(samples::DngMakerNote(shot), 3), 0xA9U);
}

TEST(SampleMakerNote, DefaultLightValuesGiveTheApproximateFNumber) {
    constexpr std::int32_t kLightOffset = 285082;
    const samples::Shot shot;
    const std::int32_t f_number =
        shot.external_light.numerator - shot.measured_light.numerator + kLightOffset;
    EXPECT_EQ(f_number, static_cast<std::int32_t>(shot.approximate_f_number.numerator));
}

}  // namespace
