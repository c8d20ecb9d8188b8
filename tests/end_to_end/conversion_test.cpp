// SPDX-License-Identifier: MIT
// Converts full-size pairs with the whole program and checks messages, exit status and files.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "samples/sensor_dump.h"
#include "tests/end_to_end/card.h"
#include "tests/support/files.h"
#include "tests/support/test_pair.h"
#include "tiff/tags.h"

namespace {

using end_to_end::Card;
using end_to_end::ContentsOf;
using end_to_end::ExpectedPixels;
using end_to_end::RawIFD;
using end_to_end::RawPixels;
using support::TestPixel;

std::uint32_t BlackLevel(const Card& card, const std::string& base) {
    return RawIFD(card.Dng(base)).At(tag::kBlackLevel).Number();
}

samples::Shot ShotAtIso(std::uint16_t iso) {
    samples::Shot shot;
    shot.iso = iso;
    return shot;
}

/// Whether `line` is one of the lines of `output`.
bool HasLine(const std::string& output, const std::string& line) {
    return ("\n" + output).find("\n" + line + "\n") != std::string::npos;
}

TEST(Conversion, WritesTheCroppedSensorDataUnchanged) {
    Card card;
    card.AddPair("L1000001");
    ASSERT_EQ(card.Run({}).status, 0);
    const auto dng = card.Dng("L1000001");
    EXPECT_TRUE(RawPixels(dng) == ExpectedPixels(TestPixel));
    const auto raw = RawIFD(dng);
    EXPECT_EQ(raw.At(tag::kStripOffsets).Number() + 3968U * 2646U * 2U, dng.size());
    EXPECT_EQ(raw.At(tag::kWhiteLevel).Number(), 16383U);
    EXPECT_FALSE(raw.Has(tag::kBlackLevel));
    EXPECT_FALSE(raw.Has(tag::kSubIFDs));
}

TEST(Conversion, WithPreviewPutsTheRawImageAfterIt) {
    Card card;
    card.AddPair("L1000001");
    ASSERT_EQ(card.Run({"-p"}).status, 0);
    const auto dng = card.Dng("L1000001");
    EXPECT_TRUE(RawPixels(dng) == ExpectedPixels(TestPixel));
    const auto preview = dng.FirstIFD();
    const auto raw = RawIFD(dng);
    const std::uint32_t offset = preview.At(tag::kStripOffsets).Number();
    EXPECT_EQ(raw.At(tag::kStripOffsets).Number(), offset + 230400U);
    EXPECT_EQ(raw.At(tag::kStripOffsets).Number() + 3968U * 2646U * 2U, dng.size());
    EXPECT_EQ(raw.At(tag::kWhiteLevel).Number(), 16384U);
    // The first samples of the first two sampled rows, 0 and 12: columns 1, 13, 25.
    const auto grey = [](int x, int y) {
        const double value = std::min(std::sqrt(TestPixel(x, y) * 4.0), 255.0);
        return static_cast<std::uint8_t>(std::lround(value));
    };
    for (const int row : {0, 1}) {
        for (const int sample : {0, 1, 2}) {
            const std::uint8_t expected = grey(1 + 12 * sample, 12 * row);
            EXPECT_EQ(dng.Bytes(offset + static_cast<std::uint32_t>(row * 960 + sample * 3), 3),
                      std::vector<std::uint8_t>(3, expected));
        }
    }
}

TEST(Conversion, RawModelVariantHasItsOwnModelName) {
    Card card;
    card.AddPair("L1000001");
    ASSERT_EQ(card.Run({"-c"}).status, 0);
    EXPECT_EQ(card.Dng("L1000001").FirstIFD().At(tag::kModel).Text(),
              std::string("M8RAW Digital Camera\0", 21));
}

TEST(Conversion, BlackLevelGrowsWithTheIsoSpeed) {
    Card card;
    card.AddPair("A160", ShotAtIso(160));
    card.AddPair("B640", ShotAtIso(640));
    card.AddPair("C2500", ShotAtIso(2500));
    ASSERT_EQ(card.Run({"-b", "120"}).status, 0);
    EXPECT_EQ(BlackLevel(card, "A160"), 120U);
    EXPECT_EQ(BlackLevel(card, "B640"), 480U);
    EXPECT_EQ(BlackLevel(card, "C2500"), 1920U);
}

TEST(Conversion, BlackLevelDefaultsTo92AndIsCutTo16Bits) {
    Card card;
    card.AddPair("L1000001");
    const std::vector<std::pair<std::vector<std::string>, std::uint32_t>> cases = {
        {{"-r", "-b"}, 92U}, {{"-b", "-r"}, 92U}, {{"-r", "-b", "70000"}, 4464U}, {{"-r", "-b", "dark"}, 0U}};
    for (const auto& [arguments, expected] : cases) {
        ASSERT_EQ(card.Run(arguments).status, 0);
        EXPECT_EQ(BlackLevel(card, "L1000001"), expected);
    }
}

TEST(Conversion, DarkFrameIsSubtractedAndReplacesTheBlackLevel) {
    Card card;
    card.AddPair("L1000001");
    card.AddDarkFrame("L1000001", 5000);
    ASSERT_EQ(card.Run({"-b", "120"}).status, 0);
    EXPECT_EQ(BlackLevel(card, "L1000001"), 0U);
    EXPECT_TRUE(RawPixels(card.Dng("L1000001")) ==
                ExpectedPixels([](int x, int y) { return std::max(TestPixel(x, y) - 5000, 0); }));
}

TEST(Conversion, DarkFrameCountsOnlyWithBlackLevelOption) {
    Card card;
    card.AddPair("L1000001");
    card.AddDarkFrame("L1000001", 5000);
    ASSERT_EQ(card.Run({}).status, 0);
    EXPECT_TRUE(RawPixels(card.Dng("L1000001")) == ExpectedPixels(TestPixel));
}

TEST(DarkFrame, OfOneImageDoesNotAffectTheNext) {
    Card card;
    card.AddPair("A", ShotAtIso(320));
    card.AddPair("B", ShotAtIso(320));
    const auto order = card.ListingOrder();
    card.AddDarkFrame(order[0], 10);
    ASSERT_EQ(card.Run({"-b", "120"}).status, 0);
    EXPECT_EQ(BlackLevel(card, order[0]), 0U);
    EXPECT_EQ(BlackLevel(card, order[1]), 240U);
    EXPECT_TRUE(RawPixels(card.Dng(order[1])) == ExpectedPixels(TestPixel));
}

/// The state that a dark frame sets is reset only after a DNG has been written. If an image fails to load,
/// the next one inherits the state.
TEST(DarkFrame, IsStillRequiredAfterAnImageWithOneFailed) {
    Card card;
    card.AddPair("A");
    card.AddPair("B");
    card.AddPair("C");
    const auto order = card.ListingOrder();
    card.AddDarkFrame(order[0], 10);
    card.AddDarkFrame(order[2], 10);
    std::filesystem::resize_file(card / (order[0] + ".RAW"), 1000);
    const auto outcome = card.Run({"-b", "120"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "\nImage 1 of 3: " + order[0] + ".RAW\n\n" + order[0] +
                                  ".RAW: Error #0008: Damaged RAW file.\n"
                                  "\nImage 2 of 3: " +
                                  order[1] + ".RAW\n\nError #0016: Damaged BIA file.\n\nImage 3 of 3: " +
                                  order[2] + ".RAW\n\n");
    EXPECT_EQ(BlackLevel(card, order[2]), 0U);
    EXPECT_FALSE(std::filesystem::exists(card / (order[1] + ".DNG")));
}

TEST(ExistingDng, IsKeptWithoutReadingThePair) {
    Card card;
    card.AddLinkedPair("L1000001", "nothing");
    support::WriteFile(card / "L1000001.DNG", "kept");
    const auto outcome = card.Run({"-v"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "\nImage: L1000001.RAW\n\nFile L1000001.DNG already exists!\n");
    EXPECT_EQ(support::ReadFile(card / "L1000001.DNG").size(), 4U);
}

TEST(ExistingDng, IsReplacedWithRefresh) {
    Card card;
    card.AddPair("L1000001");
    support::WriteFile(card / "L1000001.DNG", "old");
    ASSERT_EQ(card.Run({"-r"}).output, "\nImage: L1000001.RAW\n\n");
    EXPECT_TRUE(RawPixels(card.Dng("L1000001")) == ExpectedPixels(TestPixel));
}

TEST(ExistingDng, IsUnchangedIfItsPairIsBroken) {
    Card card;
    card.AddPair("L1000001");
    std::filesystem::rename(card / "L1000001.RAW", card / "L1000001.raw");
    std::filesystem::create_symlink("nothing", card / "L1000001.RAW");
    support::WriteFile(card / "L1000001.DNG", "kept");
    const auto before = ContentsOf(card.folder());
    const auto outcome = card.Run({"-r"});
    EXPECT_EQ(outcome.output,
              "\nImage: L1000001.RAW\n\nL1000001.RAW: Error #0006: Unable to find RAW file.\n");
    EXPECT_TRUE(ContentsOf(card.folder()) == before);
}

TEST(BrokenPair, IsReportedAndTheOthersAreConverted) {
    Card card;
    card.AddPair("A");
    for (const std::string base : {"B", "C", "D", "E"}) {
        card.AddLinkedPair(base, "A");
    }
    std::filesystem::remove(card / "B.JPG");
    support::WriteFile(card / "C.JPG", "no jpeg");
    std::filesystem::remove(card / "D.RAW");
    support::WriteFile(card / "D.RAW", "no sensor data");
    const auto outcome = card.Run({});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(HasLine(outcome.output, "B.JPG: Error #0010: Unable to find JPG file."));
    EXPECT_TRUE(HasLine(outcome.output, "C.JPG: Error #0009: Damaged EXIF in JPG."));
    EXPECT_TRUE(HasLine(outcome.output, "D.RAW: Error #0008: Damaged RAW file."));
    for (const std::string base : {"A", "E"}) {
        EXPECT_TRUE(RawPixels(card.Dng(base)) == ExpectedPixels(TestPixel)) << base;
    }
    for (const std::string base : {"B", "C", "D"}) {
        EXPECT_FALSE(std::filesystem::exists(card / (base + ".DNG"))) << base;
    }
}

TEST(Output, ThatCannotBeReplacedIsReportedAndTheRunContinues) {
    Card card;
    card.AddPair("A");
    card.AddLinkedPair("B", "A");
    std::filesystem::create_directory(card / "A.DNG");
    const auto outcome = card.Run({"-r"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(HasLine(outcome.output, "./A.DNG: DNG not written: Is a directory")) << outcome.output;
    EXPECT_TRUE(std::filesystem::is_directory(card / "A.DNG"));
    EXPECT_TRUE(RawPixels(card.Dng("B")) == ExpectedPixels(TestPixel));
}

TEST(Output, ThatDoesNotFitLeavesTheOldFileAndNothingElse) {
    Card card;
    card.AddPair("L1000001");
    support::WriteFile(card / "L1000001.DNG", "old");
    const auto before = ContentsOf(card.folder());
    const auto outcome = support::RunProgram(VELMARCON_PROGRAM, {"-r", "-v"},
                                             {.folder = card.folder(), .largest_file = 10000000});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output,
              "\nImage: L1000001.RAW\n\n"
              "Reading L1000001.JPG...Done!\n"
              "Reading L1000001.RAW...Done!\n"
              "Writing DNG header...Done!\n"
              "Writing image data...\n"
              "./L1000001.DNG: DNG not written: File too large\n");
    EXPECT_TRUE(ContentsOf(card.folder()) == before);
}

TEST(Inputs, AreNeverChanged) {
    Card card;
    card.AddPair("A");
    card.AddDarkFrame("A", 92);
    const auto before = ContentsOf(card.folder());
    ASSERT_EQ(card.Run({"-p", "-b", "-c", "-v"}).status, 0);
    auto after = ContentsOf(card.folder());
    EXPECT_EQ(after.erase("A.DNG"), 1U);
    EXPECT_TRUE(after == before);
}

TEST(Memory, DoesNotGrowWithTheNumberOfPairs) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "memory of a sanitizer would count as well";
#endif
    Card few;
    few.AddPair("P0");
    for (int i = 1; i < 4; ++i) {
        few.AddLinkedPair("P" + std::to_string(i), "P0");
    }
    const long four_pairs = few.Run({}).peak_kilobytes;
    for (int i = 4; i < 24; ++i) {
        few.AddLinkedPair("P" + std::to_string(i), "P0");
    }
    const auto outcome = few.Run({"-r"});
    EXPECT_TRUE(HasLine(outcome.output, "Image 24 of 24: " + few.ListingOrder().back() + ".RAW"));
    constexpr long one_raw_file = 21041100 / 1024;
    EXPECT_LT(outcome.peak_kilobytes, one_raw_file * 3 / 2);
    EXPECT_LT(outcome.peak_kilobytes, four_pairs + one_raw_file / 10);
}

}  // namespace
