// SPDX-License-Identifier: MIT
// The largest files that are accepted, with the largest possible values: memory stays a small multiple of the
// file size.
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "samples/camera_jpeg.h"
#include "tests/end_to_end/card.h"
#include "tests/support/camera_dng.h"
#include "tests/support/files.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace {

/// Expects that a run took at most `times` `bytes` of memory, in addition to that of an ordinary run and of
/// this test process.
void ExpectProportion([[maybe_unused]] const support::Outcome& outcome, [[maybe_unused]] std::size_t bytes,
                      [[maybe_unused]] long times) {
#ifndef __SANITIZE_ADDRESS__
    constexpr long a_run = 8 * 21041100 / 1024;
    EXPECT_LT(outcome.peak_kilobytes, static_cast<long>(bytes / 1024) * times + a_run);
#endif
}

TEST(Proportion, MemoryIsAtMostFourTimesTheJpeg) {
    constexpr std::size_t largest = 64UL * 1024 * 1024;
    constexpr std::uint32_t third = largest / 3 - 1000;
    const end_to_end::Card card;
    card.AddPair("A");
    auto block = samples::CameraExif({});
    for (const std::uint16_t text : {tag::kMake, tag::kModel, tag::kSoftware}) {
        samples::Set(block.ifd0, samples::RawEntry(text, tiff::kAscii, third, 8));
    }
    auto jpeg = samples::CameraJpeg(block);
    jpeg.insert(jpeg.end() - 2, largest - jpeg.size(), 'x');
    support::WriteFile(card / "A.JPG", jpeg);
    jpeg = {};
    const auto outcome = card.Run({});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "\nImage: A.RAW\n\n");
    EXPECT_GT(std::filesystem::file_size(card / "A.DNG"), 21000000U + 3 * third)
        << "all three values are in it";
    ExpectProportion(outcome, largest, 4);
}

TEST(Proportion, MemoryIsAtMostFourTimesTheCameraDng) {
    constexpr std::size_t largest = 15000000;
    const end_to_end::Card card;
    std::filesystem::create_directory(card / "OUT");
    auto camera = support::FullCameraDng();
    constexpr std::uint32_t third = largest / 3 - 10000;
    for (auto* ifd : {&camera.ifd0, &camera.raw_ifd, &camera.exif}) {
        samples::Set(*ifd, samples::RawEntry(60000, tiff::kUndefined, third, 8));
    }
    auto dng = samples::Serialize(camera);
    dng.resize(largest);
    support::WriteFile(card / "A.DNG", dng);
    const auto outcome = card.Run({"-i", "A.DNG", "-o", "OUT"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "\nImage: A.DNG\n\n");
    EXPECT_GT(std::filesystem::file_size(card / "OUT/A.DNG"), 20682000U + 3 * third)
        << "all three values are in it";
    ExpectProportion(outcome, largest, 4);
}

}  // namespace
