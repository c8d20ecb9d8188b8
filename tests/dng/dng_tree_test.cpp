// SPDX-License-Identifier: MIT
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "dng/dnglib.h"
#include "tests/dng/expected_tags.h"
#include "tests/support/capture_stdout.h"

namespace {

using namespace std::string_literals;
using expected::Listing;
using expected::Mode;
using samples::Ascii;
using samples::Rationals;
using samples::Set;
using samples::Short;

constexpr std::uint16_t kDefaultBlackLevel = 92;

unsigned int Build(DNGlib& dng, const Mode& mode, bool verbose = false, bool lens_fix = false) {
    return dng.createDNGTree(mode.preview, mode.black_level, kDefaultBlackLevel, verbose, mode.raw_variant,
                             lens_fix);
}

void ExpectTags(const DNGlib& dng, const Mode& mode, const expected::Tags& exif_ifd = expected::ExifIfd()) {
    EXPECT_EQ(Listing(dng.ifd0()), Listing(expected::Ifd0(mode)));
    EXPECT_EQ(Listing(dng.sub_ifd()), Listing(expected::SubIfd(mode)));
    EXPECT_EQ(Listing(dng.exif_ifd()), Listing(exif_ifd));
}

class TagTables : public testing::TestWithParam<std::tuple<bool, bool, bool>> {};

TEST_P(TagTables, HoldEveryTagOfTheMode) {
    const auto& [preview, black_level, raw_variant] = GetParam();
    const Mode mode = {preview, black_level, raw_variant};
    ReadInputData record = expected::Record();
    DNGlib dng(&record, nullptr, nullptr);
    EXPECT_EQ(Build(dng, mode), 0U);
    ExpectTags(dng, mode);
}

INSTANTIATE_TEST_SUITE_P(Modes, TagTables,
                         testing::Combine(testing::Bool(), testing::Bool(), testing::Bool()),
                         [](const auto& test) {
                             return "Raw"s + (std::get<0>(test.param) ? "AndPreview" : "Only") +
                                    (std::get<1>(test.param) ? "WithBlackLevel" : "") +
                                    (std::get<2>(test.param) ? "RawVariant" : "");
                         });

TEST(DngTree, IsBuiltAnewByEveryCall) {
    ReadInputData record = expected::Record();
    DNGlib dng(&record, nullptr, nullptr);
    Build(dng, {.preview = true, .black_level = true, .raw_variant = true});
    Build(dng, {});
    ExpectTags(dng, {});
}

TEST(DngTree, HoldsTheSizesOfAFullImage) {
    ReadInputData record = expected::Record();
    record.Width = 3968;
    record.Height = 2646;
    DNGlib dng(&record, nullptr, nullptr);
    Build(dng, {});
    expected::Tags tags = expected::Ifd0({});
    Set(tags, samples::Long(256, 3968));
    Set(tags, samples::Long(257, 2646));
    Set(tags, samples::Long(278, 2646));
    Set(tags, samples::Long(279, 20998656));
    Set(tags, samples::Shorts(50720, {3964, 2642}));
    EXPECT_EQ(Listing(dng.ifd0()), Listing(tags));
}

TEST(DngTree, PrintsOnlyTheBlackLevelStepAndOnlyWhenVerbose) {
    ReadInputData record = expected::Record();
    DNGlib dng(&record, nullptr, nullptr);
    const auto output = [&](bool black_level, bool verbose) {
        return support::CaptureStdout([&] { Build(dng, {.black_level = black_level}, verbose); });
    };
    EXPECT_EQ(output(true, true), "Calculating blacklevel...Done!\n");
    EXPECT_EQ(output(false, true), "");
    EXPECT_EQ(output(true, false), "");
}

TEST(DngTree, TakesTheLow16BitsOfTheScaledBlackLevel) {
    ReadInputData record = expected::Record();
    record.Exif.ISOSpeedRatings = 2500;
    DNGlib dng(&record, nullptr, nullptr);
    dng.createDNGTree(true, true, 5000, false, false, false);
    expected::Tags tags = expected::SubIfd({.preview = true, .black_level = true});
    Set(tags, Short(50714, 14464));  // 80000 - 65536
    EXPECT_EQ(Listing(dng.sub_ifd()), Listing(tags));
}

/// A change of the record and the resulting change of the tags.
struct Change {
    const char* name;
    std::function<void(EXIFInfo&)> change;
    expected::Tags ifd0;
    expected::Tags exif_ifd;

    friend void PrintTo(const Change& test, std::ostream* out) { *out << test.name; }
};

class ChangedRecord : public testing::TestWithParam<Change> {};

TEST_P(ChangedRecord, ChangesOnlyItsTags) {
    ReadInputData record = expected::Record();
    GetParam().change(record.Exif);
    DNGlib dng(&record, nullptr, nullptr);
    Build(dng, {});
    expected::Tags ifd0 = expected::Ifd0({});
    for (const auto& entry : GetParam().ifd0) {
        Set(ifd0, entry);
    }
    expected::Tags exif_ifd = expected::ExifIfd();
    for (const auto& entry : GetParam().exif_ifd) {
        Set(exif_ifd, entry);
    }
    EXPECT_EQ(Listing(dng.ifd0()), Listing(ifd0));
    EXPECT_EQ(Listing(dng.exif_ifd()), Listing(exif_ifd));
}

const std::vector<Change> kChanges = {
    {"SerialNumberIsSigned",
     [](EXIFInfo& exif) { exif.SerialNumber = 0xFFFFFFFF; },
     {Ascii(50735, "-1")},
     {}},
    {"TextsNeedNoNul",
     [](EXIFInfo& exif) {
         exif.Make = "A";
         exif.Software = "";
         exif.ImageUniqueID = "0123456789ABCDEF";
     },
     {Ascii(271, "A"), Ascii(305, "")},
     {Ascii(42016, "0123456789ABCDEF")}},
    {"EmptyByteValues",
     [](EXIFInfo& exif) {
         exif.ExifVersion.clear();
         exif.MakerNote.clear();
     },
     {},
     {samples::Undefined(36864, {}), samples::Undefined(37500, {})}},
    {"EstimateWraps",
     [](EXIFInfo& exif) {
         exif.Mn0311.numerator = 0x7FFFFFFF;
         exif.Mn0312.numerator = 0xFFFFFFFF;
     },
     {},
     {Rationals(33437, {{2147768730, 65500}})}},  // 2147483647 + 1 + 285082
    {"NegativeEstimate",
     [](EXIFInfo& exif) {
         exif.Mn0311.numerator = 0;
         exif.Mn0312.numerator = 300000;
         exif.Mn0313.denominator = 0;
     },
     {},
     {Rationals(33437, {{4294952378, 0}})}},  // 285082 - 300000 + 2^32
    {"FocalLengthIn35mmIsComputed",
     [](EXIFInfo& exif) {
         exif.FocalLength = {28, 1};
         exif.FocalLengthIn35mmFilm = 0;
     },
     {},
     {Rationals(37386, {{28, 1}}), Short(41989, 37)}},
    {"FocalLengthIn35mmOfNoFocalLength",
     [](EXIFInfo& exif) {
         exif.FocalLength = {28, 0};
         exif.FocalLengthIn35mmFilm = 0;
     },
     {},
     {Rationals(37386, {{28, 0}}), Short(41989, 0)}},
};

INSTANTIATE_TEST_SUITE_P(Changes, ChangedRecord, testing::ValuesIn(kChanges),
                         testing::PrintToStringParamName());

TEST(DngTree, StoresTheComputed35mmFocalLengthInTheRecord) {
    ReadInputData record = expected::Record();
    record.Exif.FocalLength = {28, 1};
    record.Exif.FocalLengthIn35mmFilm = 0;
    DNGlib dng(&record, nullptr, nullptr);
    Build(dng, {});
    EXPECT_EQ(record.Exif.FocalLengthIn35mmFilm, 37);
}

/// The database of the lens tests: one lens, for the record's code.
lensdb LensDatabase() {
    lensdb lenses;
    lenses.Lenses["100001"] = {.Maker = "Maker",
                               .Model = "Model of lens",
                               .SerialNo = "123456",
                               .FocalLength = 35.5,
                               .Aperture = {131072, 183501, 262144, 367002, 524288}};
    return lenses;
}

/// The EXIF IFD with that lens; 367002 is the engraved aperture nearest to 360000.
expected::Tags ExifIfdWithLens() {
    expected::Tags tags = expected::ExifIfd();
    Set(tags, Rationals(33437, {{367002, 65500}}));
    Set(tags, Rationals(37381, {{1999, 1000}}));
    Set(tags, Rationals(37386, {{35500, 1000}}));
    Set(tags, Ascii(42035, "Maker"));
    Set(tags, Ascii(42036, "Model of lens"));
    Set(tags, Ascii(42037, "123456"));
    return tags;
}

/// Expects these tags for the record and the database after `change`.
void ExpectLensTags(const std::function<void(EXIFInfo&, lensdb::Lensdbtype&)>& change,
                    const expected::Tags& exif_ifd, bool lens_fix = true) {
    ReadInputData record = expected::Record();
    lensdb lenses = LensDatabase();
    change(record.Exif, lenses.Lenses["100001"]);
    DNGlib dng(&record, &lenses, nullptr);
    Build(dng, {}, false, lens_fix);
    ExpectTags(dng, {}, exif_ifd);
}

constexpr auto kNoChange = [](EXIFInfo&, lensdb::Lensdbtype&) {};

TEST(LensFix, TakesTheLensFromTheDatabase) {
    ExpectLensTags(kNoChange, ExifIfdWithLens());
}

TEST(LensFix, ChangesNothingWithoutTheOption) {
    ExpectLensTags(kNoChange, expected::ExifIfd(), false);
}

TEST(LensFix, ChangesNothingWhenTheCameraSawNoCode) {
    ExpectLensTags([](EXIFInfo& exif, auto&) { exif.LensCode = 0; }, expected::ExifIfd());
}

TEST(LensFix, ChangesNothingWhenTheDatabaseLacksTheLens) {
    ExpectLensTags([](EXIFInfo& exif, auto&) { exif.LensCodeBits = "100010"; }, expected::ExifIfd());
}

TEST(LensFix, FindsTheLensByTheTextOfItsCode) {
    ExpectLensTags([](EXIFInfo& exif, auto&) { exif.LensCode = 1; }, ExifIfdWithLens());
}

TEST(LensFix, WritesNoEmptySerialNumber) {
    expected::Tags tags = ExifIfdWithLens();
    samples::Remove(tags, 42037);
    ExpectLensTags([](auto&, lensdb::Lensdbtype& lens) { lens.SerialNo = ""; }, tags);
}

TEST(LensFix, WritesAnEmptyMakerAndModel) {
    expected::Tags tags = ExifIfdWithLens();
    Set(tags, Ascii(42035, ""));
    Set(tags, Ascii(42036, ""));
    ExpectLensTags(
        [](auto&, lensdb::Lensdbtype& lens) {
            lens.Maker = "";
            lens.Model = "";
        },
        tags);
}

TEST(LensFix, KeepsTheAperturesWithALensThatHasNone) {
    expected::Tags tags = ExifIfdWithLens();
    Set(tags, Rationals(33437, {{360000, 65500}}));
    Set(tags, Rationals(37381, {{131073, 65538}}));
    ExpectLensTags([](auto&, lensdb::Lensdbtype& lens) { lens.Aperture.clear(); }, tags);
}

TEST(LensFix, TakesTheLaterOfTwoEquallyNearApertures) {
    expected::Tags tags = ExifIfdWithLens();
    Set(tags, Rationals(33437, {{370000, 65500}}));
    Set(tags, Rationals(37381, {{4833, 1000}}));
    ExpectLensTags([](auto&, lensdb::Lensdbtype& lens) { lens.Aperture = {350000, 370000, 400000}; }, tags);
}

TEST(LensFix, TakesTheWidestApertureForAnEstimateOutOfReach) {
    expected::Tags tags = ExifIfdWithLens();
    Set(tags, Rationals(33437, {{131072, 65500}}));
    ExpectLensTags([](EXIFInfo& exif, auto&) { exif.Mn0311.numerator = 0x7FFFFFFF; }, tags);
}

TEST(LensFix, Computes35mmFocalLengthFromTheLens) {
    expected::Tags tags = ExifIfdWithLens();
    Set(tags, Short(41989, 47));  // 47.215
    ExpectLensTags([](EXIFInfo& exif, auto&) { exif.FocalLengthIn35mmFilm = 0; }, tags);
}

TEST(LensFix, StoresTheFocalLengthInTheRecord) {
    ReadInputData record = expected::Record();
    record.Exif.FocalLengthIn35mmFilm = 0;
    lensdb lenses = LensDatabase();
    DNGlib dng(&record, &lenses, nullptr);
    Build(dng, {}, false, true);
    EXPECT_EQ(record.Exif.FocalLength, (Rational{35500, 1000}));
    EXPECT_EQ(record.Exif.FocalLengthIn35mmFilm, 47);
}

}  // namespace
