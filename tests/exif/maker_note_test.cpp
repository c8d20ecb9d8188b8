// SPDX-License-Identifier: MIT
#include "samples/maker_note.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "exif/exif_info.h"
#include "exif/maker_note.h"
#include "tests/exif/parse_block.h"

namespace {

using NoteBytes = std::vector<std::uint8_t>;

constexpr std::uint16_t kSerial = 0x0303;
constexpr std::uint16_t kLens = 0x0310;
constexpr std::uint32_t kUnset = 4711;

/// Decodes `note` into a record whose serial number was kUnset.
EXIFInfo Decoded(const NoteBytes& note) {
    EXIFInfo exif;
    exif.SerialNumber = kUnset;
    exif.MakerNote = note;
    EXPECT_EQ(exif.ParseMakerNote(), 0);
    return exif;
}

EXIFInfo Decoded(const std::vector<samples::Entry>& entries) {
    return Decoded(samples::MakerNote(entries));
}

TEST(MakerNote, IsReadByteForByte) {
    const EXIFInfo exif = Decoded(NoteBytes{
        'a',  'n',  'y', ' ',  't', 'e', 'x', 't',              // header, not examined
        3,    0,                                                // entries
        0x03, 0x03, 4,   0,    1,   0,   0,   0,   1, 2, 3, 4,  // serial number, inline
        0x10, 0x03, 4,   0,    1,   0,   0,   0,   7, 0, 0, 0,  // lens byte, inline
        0x11, 0x03, 5,   0,    1,   0,   0,   0,                // a rational ...
        42,   0,    0,   0,                                     // ... 42 bytes after the header
        0,    0,    0,   0,                                     // link
        0x05, 0,    0,   0x80, 6,   0,   0,   0,
    });
    EXPECT_EQ(exif.SerialNumber, 0x04030201U);
    EXPECT_EQ(exif.LensCode, 1);
    EXPECT_EQ(exif.FrameSelector, 3);
    EXPECT_EQ(exif.Mn0311, (Rational{0x80000005, 6}));
}

struct LensByte {
    std::uint8_t stored;
    std::uint8_t code;
    std::uint8_t frame_selector;
    std::string bits;
};

const std::array<LensByte, 8> kLensBytes = {{
    {0x00, 0, 0, "000000"},
    {0x0D, 3, 1, "000011"},
    {0x03, 0, 3, "000000"},
    {0x04, 1, 0, "000001"},
    {0x12, 4, 2, "000100"},
    {0x80, 32, 0, "100000"},
    {0x87, 33, 3, "100001"},
    {0xFF, 63, 3, "111111"},
}};

TEST(MakerNote, TheLensByteHoldsCodeAndFrameSelector) {
    for (const auto& [stored, code, frame_selector, bits] : kLensBytes) {
        const EXIFInfo exif = Decoded({samples::Bytes(kLens, {stored, 0xAA, 0xBB, 0xCC})});
        EXPECT_EQ(exif.LensCode, code) << bits;
        EXPECT_EQ(exif.FrameSelector, frame_selector) << bits;
        EXPECT_EQ(exif.LensCodeBits, bits);
    }
}

TEST(MakerNote, TheLensByteMayBeOutsideTheEntry) {
    EXPECT_EQ(Decoded({samples::Bytes(kLens, {0x0D, 1, 2, 3, 4})}).LensCode, 3);
}

TEST(LensCodeText, IsSixCharactersHighBitFirst) {
    EXPECT_EQ(maker_note::LensCodeText(0), "000000");
    EXPECT_EQ(maker_note::LensCodeText(3), "000011");
    EXPECT_EQ(maker_note::LensCodeText(38), "100110");
    EXPECT_EQ(maker_note::LensCodeText(63), "111111");
}

TEST(MakerNote, RationalsAreReadFromTheirTags) {
    const EXIFInfo exif = Decoded(
        {samples::Rationals(0x0311, {{1, 0x80000002}}), samples::SRationals(0x0312, {{-32768, 65536}}),
         samples::Rationals(0x0313, {{367002, 65536}}), samples::Rationals(0x0322, {{512, 256}}),
         samples::Rationals(0x0323, {{1, 4}}), samples::Rationals(0x0324, {{3, 2}})});
    EXPECT_EQ(exif.Mn0311, (Rational{1, 0x80000002}));
    EXPECT_EQ(exif.Mn0312, (Rational{0xFFFF8000, 65536}));
    EXPECT_EQ(exif.Mn0313, (Rational{367002, 65536}));
    EXPECT_EQ(exif.Mn0322, (Rational{512, 256}));
    EXPECT_EQ(exif.Mn0323, (Rational{1, 4}));
    EXPECT_EQ(exif.Mn0324, (Rational{3, 2}));
    EXPECT_EQ(exif.Mn0322Ratio, 2.0F);
    EXPECT_EQ(exif.Mn0323Ratio, 0.25F);
    EXPECT_EQ(exif.Mn0324Ratio, 1.5F);
}

TEST(MakerNote, OffsetsCountFromTheEndOfTheHeaderWhateverTheyAre) {
    // A table of one entry ends at byte 26; one of nineteen entries, like the camera's, ends at byte 242.
    for (const std::uint32_t position : {26U, 194U, 202U, 244U, 300U}) {
        NoteBytes note =
            Resized(samples::MakerNote({samples::RawEntry(0x0313, 5, 1, position - 8)}), position);
        note.insert(note.end(), {28, 0, 0, 0, 10, 0, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8});
        EXPECT_EQ(Decoded(note).Mn0313, (Rational{28, 10})) << position;
    }
}

TEST(MakerNote, RatiosAreUnsignedAndMayHaveAZeroDenominator) {
    const EXIFInfo exif =
        Decoded({samples::Rationals(0x0322, {{0x80000000, 1}}), samples::Rationals(0x0323, {{1, 0}}),
                 samples::Rationals(0x0324, {{0, 0}})});
    EXPECT_EQ(exif.Mn0322Ratio, 2147483648.0F);
    EXPECT_TRUE(std::isinf(exif.Mn0323Ratio));
    EXPECT_TRUE(std::isnan(exif.Mn0324Ratio));
}

TEST(MakerNote, WithoutEntriesNoFieldChanges) {
    EXIFInfo exif;
    exif.SerialNumber = kUnset;
    exif.LensCode = 5;
    exif.FrameSelector = 2;
    exif.LensCodeBits = "before";
    exif.Mn0311 = exif.Mn0312 = exif.Mn0313 = exif.Mn0322 = exif.Mn0323 = exif.Mn0324 = {7, 9};
    exif.Mn0322Ratio = exif.Mn0323Ratio = exif.Mn0324Ratio = 1.5F;
    const EXIFInfo before = exif;
    exif.MakerNote = samples::MakerNote({});
    EXPECT_EQ(exif.ParseMakerNote(), 0);
    EXPECT_EQ(exif.SerialNumber, before.SerialNumber);
    EXPECT_EQ(exif.LensCode, before.LensCode);
    EXPECT_EQ(exif.FrameSelector, before.FrameSelector);
    EXPECT_EQ(exif.LensCodeBits, before.LensCodeBits);
    for (const auto rational : {&EXIFInfo::Mn0311, &EXIFInfo::Mn0312, &EXIFInfo::Mn0313, &EXIFInfo::Mn0322,
                                &EXIFInfo::Mn0323, &EXIFInfo::Mn0324}) {
        EXPECT_EQ(exif.*rational, before.*rational);
    }
    for (const auto ratio : {&EXIFInfo::Mn0322Ratio, &EXIFInfo::Mn0323Ratio, &EXIFInfo::Mn0324Ratio}) {
        EXPECT_EQ(exif.*ratio, before.*ratio);
    }
}

TEST(MakerNote, OtherTagsAreIgnoredAndTheLastOfOneTagCounts) {
    const EXIFInfo exif = Decoded({samples::Long(0x0302, 1), samples::Long(kSerial, 2),
                                   samples::Long(kSerial, 3), samples::Long(0x0403, 4)});
    EXPECT_EQ(exif.SerialNumber, 3U);
}

TEST(MakerNote, TheEntryCountHas16Bits) {
    std::vector<samples::Entry> entries(256, samples::Long(0x0302, 1));
    entries.push_back(samples::Long(kSerial, 5));
    EXPECT_EQ(Decoded(entries).SerialNumber, 5U);
}

/// Decodes a serial number entry with this type and count. Its value field, 18, is also the offset of the
/// bytes 01 02 03 04 and zeros.
EXIFInfo DecodedSerial(std::uint16_t type, std::uint32_t count) {
    NoteBytes note = samples::MakerNote({samples::RawEntry(kSerial, type, count, 18)});
    note = Resized(note, 26);  // without the padding: header, count, entry, link
    note.insert(note.end(), {1, 2, 3, 4, 0, 0, 0, 0});
    return Decoded(note);
}

struct TypeUnit {
    std::uint16_t type;
    std::uint32_t unit;
};

constexpr std::array<TypeUnit, 12> kTypeUnits = {{{1, 1},
                                                  {2, 1},
                                                  {6, 1},
                                                  {3, 2},
                                                  {8, 2},
                                                  {4, 4},
                                                  {9, 4},
                                                  {11, 4},
                                                  {5, 8},
                                                  {10, 8},
                                                  {12, 8},
                                                  {0x0104, 4}}};  // only the low byte counts

TEST(MakerNote, AValueOfMoreThan4BytesIsAtItsOffset) {
    for (const auto& [type, unit] : kTypeUnits) {
        const std::uint32_t most_inline = 4 / unit;
        EXPECT_EQ(DecodedSerial(type, most_inline).SerialNumber, most_inline == 0 ? 0U : 18U) << type;
        EXPECT_EQ(DecodedSerial(type, most_inline + 1).SerialNumber, 0x04030201U) << type;
    }
}

TEST(MakerNote, BytesBeyondAValuesSizeCountAsZero) {
    EXPECT_EQ(Decoded({samples::RawEntry(kSerial, 1, 3, 0x84838281)}).SerialNumber, 0x838281U);
    EXPECT_EQ(Decoded({samples::RawEntry(kSerial, 3, 1, 0x84838281)}).SerialNumber, 0x8281U);
    EXPECT_EQ(Decoded({samples::RawEntry(kSerial, 4, 0, 0x84838281)}).SerialNumber, 0U);
    EXPECT_EQ(Decoded({samples::RawEntry(kLens, 1, 0, 0xFF)}).LensCodeBits, "000000");
    EXPECT_EQ(Decoded({samples::Long(0x0313, 5)}).Mn0313, (Rational{5, 0}));
    EXPECT_EQ(Decoded({samples::Bytes(0x0313, {1, 0, 0, 0, 2, 1})}).Mn0313, (Rational{1, 0x0102}));
}

TEST(MakerNote, AnUnknownTypeKeepsTheSizeOfTheEntryBefore) {
    for (const std::uint16_t type : std::vector<std::uint16_t>{0, 7, 13, 255}) {
        SCOPED_TRACE(type);
        const samples::Entry unknown = samples::RawEntry(kSerial, type, 99, 0x84838281);
        EXPECT_EQ(Decoded({unknown}).SerialNumber, 0U) << "size 0: no entry before";
        EXPECT_EQ(Decoded({samples::Bytes(0x0302, {1, 2}), unknown}).SerialNumber, 0x8281U);
        EXPECT_EQ(Decoded({samples::Long(0x0302, 1), unknown, unknown}).SerialNumber, 0x84838281U);
        EXPECT_EQ(Decoded({samples::Rationals(0x0302, {{1, 2}}), unknown}).SerialNumber, kUnset)
            << "8 bytes, outside";
    }
}

TEST(MakerNote, ANoteWithoutACompleteEntryChangesNothing) {
    const NoteBytes note = samples::MakerNote({samples::Long(kSerial, 5)});
    for (std::size_t size = 0; size < 22; ++size) {
        EXPECT_EQ(Decoded(Resized(note, size)).SerialNumber, kUnset) << size;
    }
    EXPECT_EQ(Decoded(Resized(note, 22)).SerialNumber, 5U);
    EXPECT_EQ(Decoded(Resized(note, 23)).SerialNumber, 5U);
}

TEST(MakerNote, EntriesBeyondTheEndAreSkipped) {
    NoteBytes note = samples::MakerNote({samples::Long(kSerial, 5), samples::Long(kLens, 0x0D)});
    note[8] = note[9] = 0xFF;
    note = Resized(note, 10 + 12 + 11);
    const EXIFInfo exif = Decoded(note);
    EXPECT_EQ(exif.SerialNumber, 5U);
    EXPECT_EQ(exif.LensCodeBits, "");
}

TEST(MakerNote, AValueMayEndWithTheLastByteAndNoLater) {
    const NoteBytes note =
        Resized(samples::MakerNote({samples::Rationals(0x0313, {{28, 10}})}, {.gap = false}), 26 + 8);
    EXPECT_EQ(Decoded(note).Mn0313, (Rational{28, 10}));
    EXPECT_EQ(Decoded(Resized(note, 33)).Mn0313, (Rational{0, 0}));
    EXPECT_EQ(Decoded(Resized(note, 35)).Mn0313, (Rational{28, 10}));
}

TEST(MakerNote, OffsetsAndCountsThatWrapAreOutside) {
    // 0xFFFFFFF8 plus the header would wrap to 0, 8 x 0x20000000 to 0, and 4 x 0x40000001 to 4.
    for (const std::uint32_t offset : {0xFFFFFFF8U, 0xFFFFFFFFU, 0xFFFFFFF0U}) {
        EXPECT_EQ(DecodedSerial(5, 1).SerialNumber, 0x04030201U);
        EXPECT_EQ(Decoded({samples::RawEntry(kSerial, 5, 1, offset)}).SerialNumber, kUnset) << offset;
    }
    EXPECT_EQ(DecodedSerial(5, 0x20000000).SerialNumber, kUnset);
    EXPECT_EQ(DecodedSerial(4, 0x40000001).SerialNumber, kUnset);
    EXPECT_EQ(DecodedSerial(1, 0xFFFFFFFF).SerialNumber, kUnset);
}

TEST(MakerNote, AnEntryAfterASkippedOneIsRead) {
    const EXIFInfo exif = Decoded({samples::RawEntry(0x0313, 5, 1, 9999), samples::Long(kSerial, 5)});
    EXPECT_EQ(exif.Mn0313, (Rational{0, 0}));
    EXPECT_EQ(exif.SerialNumber, 5U);
}

}  // namespace
