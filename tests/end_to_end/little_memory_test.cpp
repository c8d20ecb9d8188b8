// SPDX-License-Identifier: MIT
// Runs with little memory: an image that needs more gets a message, and the others are converted.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "samples/camera_jpeg.h"
#include "tests/end_to_end/card.h"
#include "tests/support/files.h"
#include "tests/support/program.h"

namespace {

constexpr std::uint64_t kMegabyte = 1024ULL * 1024;

/// A card, and runs on it with limited memory.
class LittleMemory : public testing::Test {
  protected:
    void SetUp() override {
#if defined(__SANITIZE_ADDRESS__)
        GTEST_SKIP() << "a sanitized program needs all of the address space";
#endif
    }

    support::Outcome RunWithin(std::uint64_t megabytes, const std::vector<std::string>& arguments) const {
        return support::RunProgram(VELMARCON_PROGRAM, arguments,
                                   {.folder = card_.folder(), .address_space = megabytes * kMegabyte});
    }

    /// Makes a JPEG too long for the limited memory: its picture is 40 MB of zeros.
    void MakeJpegLong(const std::string& base) const {
        auto jpeg = samples::CameraJpeg(samples::CameraExif({}));
        constexpr std::size_t end_of_image = 2;
        jpeg.insert(jpeg.end() - end_of_image, 40 * kMegabyte, 0);
        support::WriteFile(card_ / (base + ".JPG"), jpeg);
    }

    end_to_end::Card card_;
};

TEST_F(LittleMemory, FailsTheImageThatNeedsMoreAndConvertsTheOthers) {
    card_.AddPair("A");
    card_.AddPair("B");
    card_.AddPair("C");
    MakeJpegLong("B");
    const auto before = end_to_end::ContentsOf(card_.folder());

    const auto outcome = RunWithin(38, {});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.output.find("B.RAW: DNG not written: out of memory\n"), std::string::npos)
        << outcome.output;
    auto after = end_to_end::ContentsOf(card_.folder());
    EXPECT_EQ(after.erase("A.DNG"), 1U);
    EXPECT_EQ(after.erase("C.DNG"), 1U);
    EXPECT_TRUE(after == before);

    // With enough memory, the missing DNG is written like the others.
    EXPECT_EQ(RunWithin(150, {}).status, 0);
    EXPECT_TRUE(support::ReadFile(card_ / "B.DNG") == support::ReadFile(card_ / "A.DNG"));
}

TEST_F(LittleMemory, ForEveryImageReportsEachImageOnce) {
    card_.AddPair("A");
    card_.AddLinkedPair("B", "A");
    const auto before = end_to_end::ContentsOf(card_.folder());
    const auto outcome = RunWithin(16, {});
    EXPECT_EQ(outcome.status, 0);
    for (const std::string name : {"A.RAW", "B.RAW"}) {
        EXPECT_NE(outcome.output.find(name + ": DNG not written: out of memory\n"), std::string::npos)
            << outcome.output;
    }
    EXPECT_TRUE(end_to_end::ContentsOf(card_.folder()) == before);
}

TEST_F(LittleMemory, IsEnoughForADarkFrameWhenItIsForItsImage) {
    card_.AddPair("A");
    card_.AddDarkFrame("A", 10);
    const auto outcome = RunWithin(38, {"-b"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "\nImage: A.RAW\n\n");
    const auto made = support::ReadFile(card_ / "A.DNG");
    EXPECT_EQ(RunWithin(150, {"-b", "-r"}).status, 0);
    EXPECT_TRUE(support::ReadFile(card_ / "A.DNG") == made);
}

}  // namespace
