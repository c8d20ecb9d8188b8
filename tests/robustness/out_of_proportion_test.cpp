// SPDX-License-Identifier: MIT
// Small files with huge demands: thousands of entries that refer to the same bytes, and unreasonable lengths.
#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/error_codes.h"
#include "exif/exif_info.h"
#include "input/read_input_data.h"
#include "samples/camera_jpeg.h"
#include "samples/exif_block.h"
#include "tests/support/files.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace {

constexpr std::size_t kMostEntries = 65535;

/// A JPEG whose EXIF IFD has the maximum number of entries, all with the tag `tag`, which refer to the same
/// `size` bytes of `filler` after the IFDs.
std::vector<std::uint8_t> GreedyJpeg(std::uint16_t tag, std::uint16_t type,
                                     const std::vector<std::uint8_t>& filler) {
    constexpr std::uint32_t value_position = 8 + 2 + 12 + 4 + 2 + 12 * kMostEntries + 4;
    samples::ExifBlock block;
    block.exif.assign(kMostEntries, samples::RawEntry(tag, type, static_cast<std::uint32_t>(filler.size()),
                                                      value_position));
    const auto exif = samples::Serialize(block);
    constexpr std::array<std::uint8_t, 6> start = {0xFF, 0xD8, 0xFF, 0xE1, 0xFF, 0xF0};
    constexpr std::array<std::uint8_t, 2> end = {0xFF, 0xD9};
    std::vector<std::uint8_t> jpeg;
    std::ranges::copy(start, std::back_inserter(jpeg));
    std::ranges::copy(exif, std::back_inserter(jpeg));
    std::ranges::copy(filler, std::back_inserter(jpeg));
    std::ranges::copy(end, std::back_inserter(jpeg));
    return jpeg;
}

int Parse(const std::vector<std::uint8_t>& jpeg, EXIFInfo& exif) {
    return exif.parseFrom(jpeg.data(), static_cast<unsigned int>(jpeg.size()));
}

/// Copying each entry would take minutes and exceed the test's time limit.
TEST(GreedyEntries, AreCopiedUntilTheirTotalExceedsTheFile) {
    const std::vector<std::uint8_t> text(4000000, 'x');
    EXIFInfo exif;
    ASSERT_EQ(Parse(GreedyJpeg(tag::kDateTimeOriginal, tiff::kAscii, text), exif), 0);
    EXPECT_EQ(exif.DateTimeOriginal, "");
}

TEST(GreedyEntries, ThatAreNotReadCostNothing) {
    const std::vector<std::uint8_t> text(4000000, 'x');
    EXIFInfo exif;
    EXPECT_EQ(Parse(GreedyJpeg(tag::kSceneType, tiff::kUndefined, text), exif), 0);
}

TEST(GreedyEntries, HaveTheirMakerNoteDecodedWithinTheLimit) {
    // A note with the maximum number of entries, each of which holds the serial number.
    std::vector<std::uint8_t> note = {'L', 'E', 'I', 'C', 'A', 0, 0, 0, 0xFF, 0xFF};
    for (std::size_t i = 0; i < kMostEntries; ++i) {
        note.insert(note.end(), {0x03, 0x03, 4, 0, 1, 0, 0, 0, 7, 0, 0, 0});
    }
    EXIFInfo exif;
    ASSERT_EQ(Parse(GreedyJpeg(tag::kMakerNote, tiff::kUndefined, note), exif), 0);
    EXPECT_EQ(exif.SerialNumber, 7U);
}

TEST(GreedyEntries, WithAShortNoteThatDeclaresMoreEntriesThanItHolds) {
    const std::vector<std::uint8_t> note = {'L', 'E', 'I', 'C', 'A', 0, 0, 0, 0xFF, 0xFF};
    EXIFInfo exif;
    EXPECT_EQ(Parse(GreedyJpeg(tag::kMakerNote, tiff::kUndefined, note), exif), 0);
    EXPECT_EQ(exif.SerialNumber, 0U);
}

TEST(HugeFile, NamedJpgIsDamagedWithoutBeingRead) {
    const support::TempFolder folder;
    const auto jpeg = samples::CameraJpeg(samples::CameraExif({}));
    support::WriteFile(folder / "A.JPG", jpeg);
    for (const std::uintmax_t size : {std::uintmax_t{64} * 1024 * 1024 + 1, std::uintmax_t{1} << 32U,
                                      (std::uintmax_t{1} << 32U) + jpeg.size()}) {
        std::filesystem::resize_file(folder / "A.JPG", size);
        ReadInputData record;
        EXPECT_EQ(record.ProcessFile(folder.prefix(), "A", false, false), kExifDamaged) << size;
    }
}

TEST(HugeFile, NamedRawIsDamagedWithoutBeingRead) {
    const support::TempFolder folder;
    support::WriteFile(folder / "A.JPG", samples::CameraJpeg(samples::CameraExif({})));
    support::WriteFile(folder / "A.RAW", "");
    for (const std::uintmax_t size :
         {std::uintmax_t{1} << 31U, std::uintmax_t{1} << 32U, (std::uintmax_t{1} << 32U) + 21041100}) {
        std::filesystem::resize_file(folder / "A.RAW", size);
        ReadInputData record;
        EXPECT_EQ(record.ProcessFile(folder.prefix(), "A", false, false), kRawDamaged) << size;
    }
}

}  // namespace
