// SPDX-License-Identifier: MIT
#include "batch/dng_kind.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "samples/camera_dng.h"
#include "samples/tiff_entry.h"
#include "tests/support/camera_dng.h"
#include "tests/support/files.h"
#include "tiff/tags.h"

namespace {

constexpr std::size_t kHeaderBytes = 8;

class DngKindTest : public testing::Test {
  protected:
    /// The kind of a file of these bytes, made `length` bytes long.
    DngKind KindOf(std::vector<std::uint8_t> bytes, std::size_t length) const {
        bytes.resize(length);
        support::WriteFile(path_, bytes);
        return KindOfDng(path_);
    }

    const support::TempFolder folder_;
    const std::string path_ = folder_ / "L1.DNG";
};

TEST_F(DngKindTest, TheLengthOfTheCamerasDngsIsEnough) {
    EXPECT_EQ(KindOf({}, samples::kCameraDngBytes), DngKind::kCameras);
}

TEST_F(DngKindTest, OneThatBecameLongerIsStillTheCameras) {
    const auto bytes = samples::Serialize(support::FullCameraDng());
    EXPECT_EQ(KindOf(bytes, bytes.size() + 1), DngKind::kOfChangedLength);
    EXPECT_EQ(KindOf(bytes, 19'999'999), DngKind::kOfChangedLength);
    EXPECT_EQ(KindOf(bytes, 20'000'000), DngKind::kOther);
}

TEST_F(DngKindTest, AShorterOneIsDamagedOnlyIfPixelsAreMissing) {
    auto bytes = samples::Serialize(support::FullCameraDng());
    EXPECT_EQ(KindOf(bytes, bytes.size() - 1), DngKind::kCut);
    // Nothing is used of the space between the directories and the preview.
    const auto camera = support::SmallCameraDng(40, 20);
    bytes = samples::Serialize(camera);
    EXPECT_EQ(KindOf(bytes, bytes.size()), DngKind::kOfChangedLength);
    EXPECT_EQ(KindOf(bytes, bytes.size() - 1), DngKind::kCut);
}

TEST_F(DngKindTest, AShortFileThatTellsNothingIsTakenForDamage) {
    const auto bytes = samples::Serialize(support::FullCameraDng());
    EXPECT_EQ(KindOf({}, 0), DngKind::kCut);
    EXPECT_EQ(KindOf({}, 5), DngKind::kCut);
    EXPECT_EQ(KindOf(bytes, 100), DngKind::kCut);
    EXPECT_EQ(KindOf({}, samples::kCameraDngBytes + 1), DngKind::kOther);
}

TEST_F(DngKindTest, OtherCamerasAreNotMeant) {
    for (const bool is_maker : {true, false}) {
        auto camera = support::FullCameraDng();
        samples::Set(camera.ifd0, is_maker ? samples::Ascii(tag::kMake, "Someone")
                                           : samples::Ascii(tag::kModel, "M9 Digital Camera"));
        const auto bytes = samples::Serialize(camera);
        EXPECT_EQ(KindOf(bytes, bytes.size() + 1), DngKind::kOther);
        EXPECT_EQ(KindOf(bytes, bytes.size() - 1), DngKind::kOther);
    }
}

TEST_F(DngKindTest, OnlyTheCameraWritesEightBits) {
    auto camera = support::FullCameraDng();
    samples::Set(camera.raw_ifd, samples::Short(tag::kBitsPerSample, 16));
    const auto bytes = samples::Serialize(camera);
    EXPECT_EQ(KindOf(bytes, bytes.size() + 1), DngKind::kOther);
}

TEST_F(DngKindTest, TheFirstDirectoryMayStandAtTheEnd) {
    auto bytes = samples::Serialize(support::FullCameraDng());
    const auto end = bytes.size();
    const std::vector<std::uint8_t> directory(bytes.begin() + kHeaderBytes,
                                              bytes.begin() + samples::kDngRawIfdOffset);
    bytes.insert(bytes.end(), directory.begin(), directory.end());
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[4 + i] = static_cast<std::uint8_t>(end >> (8 * i));
    }
    EXPECT_EQ(KindOf(bytes, bytes.size()), DngKind::kOfChangedLength);
}

TEST_F(DngKindTest, WhatIsNoFileIsNone) {
    EXPECT_EQ(KindOfDng(folder_ / "none.DNG"), DngKind::kOther);
    EXPECT_EQ(KindOfDng(folder_.path().string()), DngKind::kOther);
}

}  // namespace
