// SPDX-License-Identifier: MIT
// Tests which entries and types fill each field of the record.
#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "exif/exif_info.h"
#include "samples/exif_block.h"
#include "tests/exif/parse_block.h"

namespace {

using samples::Entry;
using ByteVector = std::vector<std::uint8_t>;
using Types = std::vector<std::uint16_t>;

/// A field of the record and the entry that fills it.
template <typename Value>
struct Field {
    std::uint16_t tag;
    bool in_ifd0;
    Value EXIFInfo::*member;
};

constexpr std::array<Field<std::string>, 9> kTexts = {{
    {270, true, &EXIFInfo::ImageDescription},
    {271, true, &EXIFInfo::Make},
    {272, true, &EXIFInfo::Model},
    {305, true, &EXIFInfo::Software},
    {306, true, &EXIFInfo::DateTime},
    {33432, true, &EXIFInfo::Copyright},
    {36867, false, &EXIFInfo::DateTimeOriginal},
    {36868, false, &EXIFInfo::DateTimeDigitized},
    {37521, false, &EXIFInfo::SubSecTimeOriginal},
}};

constexpr std::array<Field<std::uint16_t>, 10> kShorts = {{
    {258, true, &EXIFInfo::BitsPerSample},
    {274, true, &EXIFInfo::Orientation},
    {34850, false, &EXIFInfo::ExposureProgram},
    {34855, false, &EXIFInfo::ISOSpeedRatings},
    {37383, false, &EXIFInfo::MeteringMode},
    {37385, false, &EXIFInfo::Flash},
    {41728, false, &EXIFInfo::FileSource},
    {41729, false, &EXIFInfo::SceneType},
    {41989, false, &EXIFInfo::FocalLengthIn35mmFilm},
    {41990, false, &EXIFInfo::SceneCaptureType},
}};

constexpr std::array<Field<Rational>, 6> kRationals = {{
    {33434, false, &EXIFInfo::ExposureTime},
    {33437, false, &EXIFInfo::FNumber},
    {37377, false, &EXIFInfo::ShutterSpeedValue},
    {37382, false, &EXIFInfo::SubjectDistance},
    {37386, false, &EXIFInfo::FocalLength},
    {41988, false, &EXIFInfo::DigitalZoomRatio},
}};

constexpr std::array<Field<std::uint32_t>, 2> kDimensions = {{
    {40962, false, &EXIFInfo::PixelXDimension},
    {40963, false, &EXIFInfo::PixelYDimension},
}};

constexpr std::array<Field<ByteVector>, 2> kByteVectors = {{
    {36864, false, &EXIFInfo::ExifVersion},
    {37500, false, &EXIFInfo::MakerNote},
}};

constexpr Field<SRational> kExposureBias = {37380, false, &EXIFInfo::ExposureBiasValue};

// These fields are read without a check of the type.
constexpr Field<Rational> kMaxAperture = {37381, false, &EXIFInfo::MaxApertureValue};
constexpr Field<std::string> kUniqueID = {42016, false, &EXIFInfo::ImageUniqueID};
constexpr std::array<Field<std::uint16_t>, 2> kUntypedShorts = {{
    {37384, false, &EXIFInfo::LightSource},
    {41987, false, &EXIFInfo::WhiteBalance},
}};

/// Types whose entries are decoded, and others, whose entries are ignored whatever their tag.
const Types kDecodedTypes = {1, 2, 3, 4, 5, 7, 9, 10};
const Types kUnknownTypes = {0, 6, 8, 11, 12, 13, 0x102, 0xFFFF};

Types Except(Types types, const Types& excluded) {
    std::erase_if(types, [&](auto type) { return std::ranges::find(excluded, type) != excluded.end(); });
    return types;
}

/// Reads a block with only `entry` in one IFD and expects that `field` changes from `before` to `after`.
template <typename Value>
void ExpectAfter(const Field<Value>& field, const Value& before, const Entry& entry, bool in_ifd0,
                 ByteOrder order, const Value& after) {
    SCOPED_TRACE(testing::Message() << "tag " << field.tag << ", type " << entry.type << ", "
                                    << (order == ByteOrder::kBigEndian ? "MM" : "II"));
    samples::ExifBlock block = {.order = order};
    (in_ifd0 ? block.ifd0 : block.exif).push_back(entry);
    EXIFInfo exif;
    exif.*field.member = before;
    EXPECT_EQ(ParseSegment(samples::Serialize(block), exif), 0);
    EXPECT_EQ(exif.*field.member, after);
}

/// Expects that `entry` gives `field` the value `expected` in both byte orders, and that it has no effect in
/// the other IFD.
template <typename Value>
void ExpectRead(const Field<Value>& field, const Entry& entry, const Value& expected) {
    ExpectAfter(field, Value{}, entry, field.in_ifd0, ByteOrder::kLittleEndian, expected);
    ExpectAfter(field, Value{}, entry, field.in_ifd0, ByteOrder::kBigEndian, expected);
    ExpectAfter(field, Value{}, entry, !field.in_ifd0, ByteOrder::kLittleEndian, Value{});
}

/// Expects that entries of `types` turn `before` into `after`. Their value field, 8, is also the offset of a
/// readable value.
template <typename Value>
void ExpectFromTypes(const Field<Value>& field, const Types& types, const Value& before, const Value& after) {
    for (const std::uint16_t type : types) {
        ExpectAfter(field, before, samples::RawEntry(field.tag, type, 1, 8), field.in_ifd0,
                    ByteOrder::kLittleEndian, after);
    }
}

/// Expects that entries of all types except `right` leave the field unchanged.
template <typename Value>
void ExpectUnchangedByTypesBut(const Types& right, const Field<Value>& field, const Value& before) {
    ExpectFromTypes(field, Except(kDecodedTypes, right), before, before);
    ExpectFromTypes(field, kUnknownTypes, before, before);
}

TEST(ExifFields, TextsAreReadWithTheirNulAndOnlyAsAscii) {
    for (const auto& field : kTexts) {
        ExpectRead(field, samples::Ascii(field.tag, "some text"), std::string("some text\0", 10));
        ExpectUnchangedByTypesBut({2}, field, std::string("before"));
    }
}

TEST(ExifFields, ATextIsAsLongAsItsCount) {
    ExpectRead(kTexts[0], samples::AsciiUnterminated(270, "no end"), std::string("no end"));
    ExpectRead(kTexts[0], samples::AsciiUnterminated(270, std::string_view("a\0b\0\0\0", 6)),
               std::string("a\0b\0\0\0", 6));
}

TEST(ExifFields, ShortsAreReadOnlyAsShort) {
    for (const auto& field : kShorts) {
        ExpectRead(field, samples::Short(field.tag, 0x8102), std::uint16_t{0x8102});
        ExpectUnchangedByTypesBut({3}, field, std::uint16_t{777});
    }
}

TEST(ExifFields, OfSeveralShortsTheFirstCounts) {
    ExpectRead(kShorts[0], samples::Shorts(258, {12, 13}), std::uint16_t{12});
}

TEST(ExifFields, RationalsAreReadOnlyAsRational) {
    for (const auto& field : kRationals) {
        ExpectRead(field, samples::Rationals(field.tag, {{0x80000001, 0x01020304}}),
                   Rational{0x80000001, 0x01020304});
        ExpectUnchangedByTypesBut({5}, field, Rational{7, 9});
    }
}

TEST(ExifFields, DimensionsAreReadAsLongOrShort) {
    for (const auto& field : kDimensions) {
        ExpectRead(field, samples::Long(field.tag, 0x81020304), std::uint32_t{0x81020304});
        ExpectRead(field, samples::Short(field.tag, 0x8102), std::uint32_t{0x8102});
        ExpectUnchangedByTypesBut({3, 4}, field, std::uint32_t{777});
    }
}

TEST(ExifFields, ByteVectorsAreReadOnlyAsUndefined) {
    for (const auto& field : kByteVectors) {
        ExpectRead(field, samples::Undefined(field.tag, {1, 2, 3, 4, 5}), ByteVector{1, 2, 3, 4, 5});
        ExpectUnchangedByTypesBut({7}, field, ByteVector{7, 7});
    }
}

TEST(ExifFields, TheFastestExposureTimesAreSnapped) {
    ExpectRead(kRationals[0], samples::Rationals(33434, {{166, 1000000}}), Rational{1, 6000});
    ExpectRead(kRationals[0], samples::Rationals(33434, {{333, 1000000}}), Rational{1, 3000});
    ExpectRead(kRationals[0], samples::Rationals(33434, {{666, 1000000}}), Rational{1, 1500});
    ExpectRead(kRationals[0], samples::Rationals(33434, {{167, 1000000}}), Rational{167, 1000000});
}

TEST(ExifFields, OnlyExposureTimesAreSnapped) {
    ExpectRead(kRationals[1], samples::Rationals(33437, {{166, 1000000}}), Rational{166, 1000000});
}

TEST(ExifFields, TheExposureBiasIsReadInThirdsAsASignedValue) {
    ExpectRead(kExposureBias, samples::Rationals(37380, {{1, 3}}), SRational{1, 3});
    ExpectRead(kExposureBias, samples::Rationals(37380, {{2, 3}}), SRational{2, 3});
    ExpectRead(kExposureBias, samples::Rationals(37380, {{0xFFFFFFFF, 3}}), SRational{0, 3});
    ExpectRead(kExposureBias, samples::Rationals(37380, {{0xFFFFFFFE, 3}}), SRational{-1, 3});
    ExpectRead(kExposureBias, samples::Rationals(37380, {{1, 0}}), SRational{0, 3});
}

TEST(ExifFields, AnExposureBiasOfAnyOtherTypeLeavesTheFieldCleared) {
    ExpectUnchangedByTypesBut({5}, kExposureBias, SRational{0, 1});
    ExpectAfter(kExposureBias, {0, 1}, samples::SRationals(37380, {{1, 3}}), false, ByteOrder::kLittleEndian,
                {0, 1});
}

TEST(ExifFields, TagsWithoutATypeTestAreReadFromTheirOwnType) {
    ExpectRead(kMaxAperture, samples::Rationals(37381, {{131072, 65536}}), Rational{131072, 65536});
    ExpectRead(kUniqueID, samples::Ascii(42016, "0001F"), std::string("0001F\0", 6));
    for (const auto& field : kUntypedShorts) {
        ExpectRead(field, samples::Short(field.tag, 0x8102), std::uint16_t{0x8102});
    }
}

TEST(ExifFields, TagsWithoutATypeTestBecomeZeroWithAnotherType) {
    ExpectFromTypes(kMaxAperture, Except(kDecodedTypes, {5}), Rational{7, 9}, Rational{0, 0});
    ExpectFromTypes(kUniqueID, Except(kDecodedTypes, {2}), std::string("before"), std::string());
    for (const auto& field : kUntypedShorts) {
        ExpectFromTypes(field, Except(kDecodedTypes, {3}), std::uint16_t{777}, std::uint16_t{0});
    }
}

TEST(ExifFields, UnknownTypesAreIgnoredEvenWithoutATypeTest) {
    ExpectFromTypes(kMaxAperture, kUnknownTypes, Rational{7, 9}, Rational{7, 9});
    ExpectFromTypes(kUniqueID, kUnknownTypes, std::string("before"), std::string("before"));
    for (const auto& field : kUntypedShorts) {
        ExpectFromTypes(field, kUnknownTypes, std::uint16_t{777}, std::uint16_t{777});
    }
}

TEST(ExifFields, OfTwoEntriesOfOneTagTheLastCounts) {
    EXIFInfo exif;
    const samples::ExifBlock block = {
        .ifd0 = {samples::Ascii(271, "first"), samples::Ascii(271, "second")},
        .exif = {samples::Short(34855, 160), samples::Long(34855, 1), samples::Short(34855, 320)}};
    EXPECT_EQ(ParseSegment(samples::Serialize(block), exif), 0);
    EXPECT_EQ(exif.Make, std::string("second\0", 7));
    EXPECT_EQ(exif.ISOSpeedRatings, 320);
}

}  // namespace
