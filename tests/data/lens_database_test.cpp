// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <bitset>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "exif/lensdb.h"
#include "tests/data/lens_table.h"
#include "tests/support/files.h"

namespace {

constexpr std::array kHalfStops = {1.0, 1.2, 1.4, 1.7,  2.0,  2.4,  2.8,  3.4,  4.0,  4.8, 5.6,
                                   6.7, 8.0, 9.5, 11.0, 13.0, 16.0, 19.0, 22.0, 27.0, 32.0};

const std::string kFolder = VELMARCON_DATA_FOLDER;

lensdb Shipped() {
    lensdb lenses(kFolder);
    EXPECT_EQ(lenses.LoadLensData(), 0);
    return lenses;
}

std::vector<lens_table::Row> Table() {
    return lens_table::Read(kFolder + "lens-codes.csv");
}

std::int32_t Units(double f_number) {
    return static_cast<std::int32_t>(std::lround(f_number * lensdb::kApertureUnits));
}

double StopsBetween(std::int32_t wider, std::int32_t smaller) {
    return 2 * std::log2(static_cast<double>(smaller) / wider);
}

bool IsHalfStop(std::int32_t aperture) {
    return std::ranges::any_of(kHalfStops, [&](double stop) { return Units(stop) == aperture; });
}

/// The apertures go from the widest to the smallest, none is left out between them, and none is wedged in.
void ExpectHalfStops(const std::vector<std::int32_t>& apertures, const lens_table::Row& row) {
    ASSERT_GE(apertures.size(), 2U);
    EXPECT_EQ(apertures.front(), Units(row.widest));
    EXPECT_EQ(apertures.back(), Units(row.smallest));
    EXPECT_TRUE(std::all_of(apertures.begin() + 1, apertures.end() - 1, IsHalfStop));
    for (std::size_t i = 1; i < apertures.size(); ++i) {
        const double stops = StopsBetween(apertures[i - 1], apertures[i]);
        EXPECT_GE(stops, 0.25) << "after " << apertures[i - 1] / lensdb::kApertureUnits;
        EXPECT_LE(stops, 0.70) << "after " << apertures[i - 1] / lensdb::kApertureUnits;
    }
}

TEST(ShippedLensDatabase, HoldsEveryLensOfTheTableAndNoOther) {
    const lensdb lenses = Shipped();
    const auto table = Table();
    EXPECT_EQ(table.size(), 41U);
    EXPECT_EQ(lenses.Lenses.size(), table.size());
    for (const auto& row : table) {
        EXPECT_EQ(lenses.Lenses.count(row.code), 1U) << row.model;
        EXPECT_EQ(std::bitset<6>(row.number).to_string(), row.code) << row.model;
    }
}

TEST(ShippedLensDatabase, EachLensHasItsMakerNameAndFocalLength) {
    lensdb lenses = Shipped();
    for (const auto& row : Table()) {
        const auto& lens = lenses.Lenses[row.code];
        EXPECT_EQ(lens.Maker, "Leica Camera AG") << row.model;
        EXPECT_EQ(lens.Model, row.model);
        EXPECT_EQ(lens.SerialNo, "") << row.model;
        // Of several focal lengths, the middle one.
        EXPECT_EQ(lens.FocalLength, row.focal_lengths.at(row.focal_lengths.size() / 2)) << row.model;
    }
}

TEST(ShippedLensDatabase, EachLensHasTheHalfStopsFromItsWidestToItsSmallestAperture) {
    lensdb lenses = Shipped();
    for (const auto& row : Table()) {
        SCOPED_TRACE(row.model);
        ExpectHalfStops(lenses.Lenses[row.code].Aperture, row);
    }
}

TEST(ShippedLensDatabase, AHalfStopHardlyPastTheWidestApertureIsNotThere) {
    lensdb lenses = Shipped();
    EXPECT_EQ(lenses.Lenses["110010"].Aperture,  // Elmar-M 24mm f/3.8 ASPH.
              (std::vector{Units(3.8), Units(4.8), Units(5.6), Units(6.7), Units(8), Units(9.5), Units(11),
                           Units(13), Units(16)}));
    EXPECT_EQ(lenses.Lenses["110001"].Aperture.at(1), Units(1.2));  // Noctilux-M 50mm f/0.95 ASPH.
    EXPECT_EQ(lenses.Lenses["001100"].Aperture.at(1), Units(2.4));  // Thambar-M 90mm f/2.2
}

TEST(ShippedLensDatabase, TheOtherFocalLengthsAreThereToBeChosen) {
    const std::string text = support::ReadText(kFolder + "lensdb.ini");
    EXPECT_NE(text.find(";FocalLength = 16\nFocalLength = 18\n;FocalLength = 21\n"), std::string::npos);
    EXPECT_NE(text.find(";FocalLength = 28\nFocalLength = 35\n;FocalLength = 50\n"), std::string::npos);
}

// With -l the focal length of the file replaces the one that the camera noted.
TEST(ShippedLensDatabase, TellsToLeaveOutTheOptionForLensesWithSeveralFocalLengths) {
    const std::string text = support::ReadText(kFolder + "lensdb.ini");
    EXPECT_NE(text.find("leave -l out for pictures taken with these lenses"), std::string::npos);
    for (const std::string code : {"010000", "101010"}) {
        const std::size_t section = text.find("\n[" + code + "]\n");
        ASSERT_NE(section, std::string::npos) << code;
        const std::size_t remark = text.find("; With -l every picture gets this focal length", section);
        EXPECT_LT(remark, text.find("FocalLength = ", section)) << code;
    }
}

TEST(ShippedLensDatabase, TellsWhichCodesBelongToTwoLenses) {
    const std::string text = support::ReadText(kFolder + "lensdb.ini");
    EXPECT_NE(text.find("The codes 110011 (51) and 110101 (53) belong to two lenses each."),
              std::string::npos);
    for (const std::string code : {"110011", "110101"}) {
        EXPECT_NE(text.find("\n[" + code + "]\n; Another lens has the same code"), std::string::npos) << code;
    }
}

/// The file with the example of an own lens made a section, as its remarks tell how.
std::string WithExample(const std::string& text) {
    const std::string indent = ";   ";
    std::istringstream lines(text);
    std::string changed;
    for (std::string line; std::getline(lines, line);) {
        const bool example = line.starts_with(indent + "[") ||
                             (line.starts_with(indent) && line.find(" = ") != std::string::npos);
        changed += line.substr(example ? indent.size() : 0) + "\n";
    }
    return changed;
}

TEST(ShippedLensDatabase, TheExampleOfAnOwnLensIsALensOnceItsSemicolonsAreGone) {
    const support::TempFolder folder;
    support::WriteFile(folder / "lensdb.ini", WithExample(support::ReadText(kFolder + "lensdb.ini")));
    lensdb lenses(folder.prefix());
    ASSERT_EQ(lenses.LoadLensData(), 0);
    EXPECT_EQ(lenses.Lenses.size(), Shipped().Lenses.size() + 1);
    const auto& own = lenses.Lenses["111111"];
    EXPECT_EQ(own.Maker, "Carl Zeiss");
    EXPECT_EQ(own.Model, "C Sonnar T* 50mm f/1.5 ZM");
    EXPECT_EQ(own.SerialNo, "15612345");
    EXPECT_EQ(own.FocalLength, 50.0);
    EXPECT_EQ(own.Aperture, (std::vector{Units(1.5), Units(2), Units(2.8), Units(4), Units(5.6), Units(8),
                                         Units(11), Units(16)}));
}

}  // namespace
