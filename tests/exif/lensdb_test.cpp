// SPDX-License-Identifier: MIT
#include "exif/lensdb.h"

#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/files.h"

namespace {

using Apertures = std::vector<std::int32_t>;

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

/// The database of a folder whose lensdb.ini is `text`.
lensdb Loaded(const std::string& text) {
    const support::TempFolder folder;
    support::WriteFile(folder / "lensdb.ini", text);
    lensdb lenses(folder.prefix());
    EXPECT_EQ(lenses.LoadLensData(), 0);
    return lenses;
}

/// The lens of a file with only the section 000011, which consists of `lines`.
lensdb::Lensdbtype Lens(const std::string& lines) {
    return Loaded("[000011]\n" + lines).Lenses["000011"];
}

TEST(LensDatabase, TheFileIsInTheFolder) {
    EXPECT_EQ(lensdb("/some/folder/").DatabaseFile, "/some/folder/lensdb.ini");
    EXPECT_EQ(lensdb("").DatabaseFile, "lensdb.ini");
    EXPECT_EQ(lensdb().DatabaseFile, "");
    EXPECT_TRUE(lensdb("/some/folder/").Lenses.empty());
}

TEST(LensDatabase, ASectionHoldsALens) {
    const auto lens = Lens(
        "Maker = Leica Camera AG\nModel=Summicron-M 1:2/35 ASPH.\nSerialNo=0123\n"
        "FocalLength=35\nAperture=1.4\nAperture=16\n");
    EXPECT_EQ(lens.Maker, "Leica Camera AG");
    EXPECT_EQ(lens.Model, "Summicron-M 1:2/35 ASPH.");
    EXPECT_EQ(lens.SerialNo, "0123");
    EXPECT_EQ(lens.FocalLength, 35.0);
    EXPECT_EQ(lens.Aperture, (Apertures{91750, 1048576}));
}

TEST(LensDatabase, AperturesAreInAscendingOrder) {
    EXPECT_EQ(Lens("Aperture=16\nAperture=1.4\n").Aperture, (Apertures{91750, 1048576}));
    EXPECT_EQ(Lens("Aperture=8\nMaker=x\nAperture=2\nAperture=16\nAperture=2\n").Aperture,
              (Apertures{131072, 131072, 524288, 1048576}));
}

TEST(LensDatabase, AFieldWithoutAKeyIsEmpty) {
    const auto lens = Lens("Colour=black\n");
    EXPECT_EQ(lens.Maker, "");
    EXPECT_EQ(lens.Model, "");
    EXPECT_EQ(lens.SerialNo, "");
    EXPECT_EQ(lens.FocalLength, 0.0);
    EXPECT_TRUE(lens.Aperture.empty());
}

TEST(LensDatabase, KeysAreComparedWithoutCase) {
    const auto lens = Lens("MAKER=a\nmodel=b\nserialNO=c\nfocallength=28\naperture=2\nAPERTURE=4\n");
    EXPECT_EQ(lens.Maker, "a");
    EXPECT_EQ(lens.Model, "b");
    EXPECT_EQ(lens.SerialNo, "c");
    EXPECT_EQ(lens.FocalLength, 28.0);
    EXPECT_EQ(lens.Aperture, (Apertures{131072, 262144}));
}

TEST(LensDatabase, OfARepeatedKeyTheFirstValueCounts) {
    const auto lens = Lens("Maker=first\nFocalLength=35\nMaker=second\nFocalLength=50\n");
    EXPECT_EQ(lens.Maker, "first");
    EXPECT_EQ(lens.FocalLength, 35.0);
}

TEST(LensDatabase, ABadNumberCountsAsItsNumericPrefixOrZero) {
    EXPECT_EQ(Lens("FocalLength=35.5 mm\n").FocalLength, 35.5);
    EXPECT_EQ(Lens("FocalLength=long\n").FocalLength, 0.0);
    EXPECT_EQ(Lens("FocalLength=\n").FocalLength, 0.0);
    EXPECT_EQ(Lens("Aperture=f/2\nAperture=2,8\n").Aperture, (Apertures{0, 131072}));
}

TEST(LensDatabase, AnApertureIsRoundedByAddingAHalfAndCuttingTowardZero) {
    // 0.00001 is 0.66 units; -1 is -65535.5 units after a half is added.
    EXPECT_EQ(Lens("Aperture=0.00001\n").Aperture, (Apertures{1}));
    EXPECT_EQ(Lens("Aperture=0.000005\n").Aperture, (Apertures{0}));
    EXPECT_EQ(Lens("Aperture=-1\n").Aperture, (Apertures{-65535}));
}

TEST(LensDatabase, AnApertureOutOfRangeGivesTheNearestThatFits) {
    EXPECT_EQ(Lens("Aperture=40000\nAperture=nan\nAperture=-inf\nAperture=1e999\n").Aperture,
              (Apertures{kLowest, 0, kHighest, kHighest}));
}

TEST(LensDatabase, LensesAreFoundByTheirCode) {
    const lensdb lenses = Loaded("; lenses\n[000011]\nModel=a\n[100001]\nModel=b\n[111111]\n");
    ASSERT_EQ(lenses.Lenses.size(), 3U);
    EXPECT_EQ(lenses.Lenses.at("000011").Model, "a");
    EXPECT_EQ(lenses.Lenses.at("100001").Model, "b");
    EXPECT_EQ(lenses.Lenses.count("111111"), 1U);
    EXPECT_EQ(lenses.Lenses.count("000010"), 0U);
}

TEST(LensDatabase, LoadingAgainReplacesLensesOfTheSameCode) {
    const support::TempFolder folder;
    support::WriteFile(folder / "lensdb.ini",
                       "[000011]\nModel=a\nSerialNo=1\nAperture=2\n[000001]\nModel=c\n");
    lensdb lenses(folder.prefix());
    ASSERT_EQ(lenses.LoadLensData(), 0);
    support::WriteFile(folder / "lensdb.ini", "[000011]\nModel=b\nAperture=4\n");
    ASSERT_EQ(lenses.LoadLensData(), 0);
    EXPECT_EQ(lenses.Lenses.at("000011").Model, "b");
    EXPECT_EQ(lenses.Lenses.at("000011").SerialNo, "");
    EXPECT_EQ(lenses.Lenses.at("000011").Aperture, (Apertures{262144}));
    EXPECT_EQ(lenses.Lenses.at("000001").Model, "c");
}

TEST(LensDatabase, AFileThatCannotBeReadIsANegativeErrorAndKeepsTheLenses) {
    const support::TempFolder folder;
    lensdb lenses(folder.prefix());
    lenses.Lenses["000011"].Model = "before";
    EXPECT_LT(lenses.LoadLensData(), 0);
    std::filesystem::create_directory(folder / "lensdb.ini");
    EXPECT_LT(lenses.LoadLensData(), 0);
    EXPECT_EQ(lenses.Lenses.size(), 1U);
    EXPECT_EQ(lenses.Lenses.at("000011").Model, "before");
    EXPECT_LT(lensdb().LoadLensData(), 0);
}

TEST(LensDatabase, AnEmptyFileHoldsNoLenses) {
    EXPECT_TRUE(Loaded("").Lenses.empty());
}

}  // namespace
