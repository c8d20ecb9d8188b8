// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "input/read_input_data.h"
#include "samples/sensor_dump.h"
#include "tests/support/capture_stdout.h"
#include "tests/support/files.h"
#include "tests/support/short_file.h"
#include "tests/support/test_pair.h"

namespace {

constexpr int kRawNotFound = 6;
constexpr int kRawUnreadable = 7;
constexpr int kRawDamaged = 8;
constexpr int kBiaDamaged = 16;

constexpr std::size_t kPixels = 10499328;
constexpr std::size_t kWords = 10520550;
constexpr std::size_t kBytes = 21041100;
constexpr std::size_t kLeastBytes = 10499328;

/// A record set up to read X.RAW, and X.BIA if `subtract` is set, from `folder`.
ReadInputData RecordIn(const support::TempFolder& folder, bool subtract = false) {
    ReadInputData record;
    record.Folder = folder.prefix();
    record.RawFileName = "X.RAW";
    record.BiaFileName = "X.BIA";
    record.SubtractBia = subtract;
    return record;
}

/// The image extracted from `words`, which the record holds, and the dark frame `dark`.
ReadInputData Extracted(const std::vector<std::uint16_t>& words, const std::vector<std::uint16_t>& dark) {
    const support::TempFolder folder;
    support::WriteFile(folder / "X.BIA", samples::DumpBytes(dark));
    ReadInputData record = RecordIn(folder, true);
    record.ImageData = words;
    record.ImageSize = kBytes;
    EXPECT_EQ(record.ExtractRawImage(), 0);
    return record;
}

void ExpectSizes(const ReadInputData& record) {
    EXPECT_EQ(record.Width, 3968);
    EXPECT_EQ(record.Height, 2646);
    EXPECT_EQ(record.ImageSize, 10499328);
    EXPECT_EQ(record.ImageData.size(), kPixels);
    EXPECT_EQ(record.PreviewSize, 230400);
    EXPECT_EQ(record.PreviewData.size(), 230400U);
}

/// Word i is i % 65521, so that no two rows are alike and some words have more than 14 bits.
std::vector<std::uint16_t> NumberedWords() {
    std::vector<std::uint16_t> words(kWords);
    for (std::size_t i = 0; i < words.size(); ++i) {
        words[i] = static_cast<std::uint16_t>(i % 65521);
    }
    return words;
}

/// Expects the crop of NumberedWords().
void ExpectCropOfNumberedWords(const std::vector<std::uint16_t>& image) {
    ASSERT_EQ(image.size(), kPixels);
    for (std::size_t y = 0; y < 2646; ++y) {
        for (std::size_t x = 0; x < 3968; ++x) {
            ASSERT_EQ(image[y * 3968 + x], (54 + y * 3976 + x) % 65521) << x << ", " << y;
        }
    }
}

/// A file of `size` bytes, each 0x21.
std::vector<std::uint8_t> EvenBytes(std::size_t size) {
    std::vector<std::uint8_t> bytes(size, 0x21);
    return bytes;
}

TEST(RawLoader, ACompleteFileGivesTheCroppedImageUnchanged) {
    const support::TempFolder folder;
    const auto bytes = samples::DumpBytes(NumberedWords());
    ASSERT_EQ(bytes.size(), kBytes);
    support::WriteFile(folder / "X.RAW", bytes);
    ReadInputData record = RecordIn(folder);
    EXPECT_EQ(record.LoadRawFile(), 0);
    ExpectSizes(record);
    EXPECT_EQ(record.ImageData[0], 54);
    ExpectCropOfNumberedWords(record.ImageData);
    EXPECT_TRUE(record.BiaData.empty());
}

TEST(RawLoader, BytesAfterACompleteDumpAreIgnored) {
    const support::TempFolder folder;
    support::WriteFile(folder / "X.RAW", samples::DumpBytes(NumberedWords()));
    std::filesystem::resize_file(folder / "X.RAW", 3 * kBytes + 1);
    ReadInputData record = RecordIn(folder);
    EXPECT_EQ(record.LoadRawFile(), 0);
    ExpectSizes(record);
    ExpectCropOfNumberedWords(record.ImageData);
}

TEST(RawLoader, AMissingFileOrAFolderIsNotFound) {
    const support::TempFolder folder;
    EXPECT_EQ(RecordIn(folder).LoadRawFile(), kRawNotFound);
    std::filesystem::create_directory(folder / "X.RAW");
    EXPECT_EQ(RecordIn(folder).LoadRawFile(), kRawNotFound);
}

TEST(RawLoader, AFileWithFewerBytesThanPixelsIsDamaged) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, kLeastBytes - 1}) {
        const support::TempFolder folder;
        support::WriteFile(folder / "X.RAW", EvenBytes(size));
        EXPECT_EQ(RecordIn(folder).LoadRawFile(), kRawDamaged) << size;
    }
}

TEST(RawLoader, AFileBeyond31BitsIsDamagedWithoutBeingRead) {
    const support::TempFolder folder;
    support::WriteFile(folder / "X.RAW", "x");
    std::filesystem::resize_file(folder / "X.RAW", std::uintmax_t{1} << 31U);  // takes no room on the disk
    EXPECT_EQ(RecordIn(folder).LoadRawFile(), kRawDamaged);
}

/// Expects that pixels read 0x2121 before word `end`, `last` at that word, and 0 after it.
void ExpectZerosAfter(const ReadInputData& record, std::size_t end, std::uint16_t last) {
    ExpectSizes(record);
    const std::size_t row = (end - 54) / 3976;
    const std::size_t pixel = row * 3968 + (end - 54) % 3976;
    const auto begin = record.ImageData.begin();
    const auto at = begin + static_cast<std::ptrdiff_t>(pixel);
    EXPECT_TRUE(std::all_of(begin, at, [](auto value) { return value == 0x2121; }));
    EXPECT_EQ(*at, last);
    EXPECT_TRUE(std::all_of(at + 1, record.ImageData.end(), [](auto value) { return value == 0; }));
}

TEST(RawLoader, MissingWordsOfAShortFileAreZero) {
    const support::TempFolder folder;
    support::WriteFile(folder / "X.RAW", EvenBytes(kLeastBytes));
    ReadInputData record = RecordIn(folder);
    EXPECT_EQ(record.LoadRawFile(), 0);
    ExpectZerosAfter(record, 5249664, 0);
}

TEST(RawLoader, TheLowByteOfAWordCutInHalfCounts) {
    const support::TempFolder folder;
    support::WriteFile(folder / "X.RAW", EvenBytes(kLeastBytes + 1));
    ReadInputData record = RecordIn(folder);
    EXPECT_EQ(record.LoadRawFile(), 0);
    ExpectZerosAfter(record, 5249664, 0x21);
}

TEST(RawLoader, TheOldContentOfReusedMemoryDoesNotMatter) {
    const support::TempFolder folder;
    support::WriteFile(folder / "X.RAW", EvenBytes(kLeastBytes));
    support::WriteFile(folder / "X.BIA", "");
    for (const std::size_t used : {std::size_t{1000}, kPixels, kWords + 1000}) {
        ReadInputData record = RecordIn(folder, true);
        record.ImageData.assign(used, 0x5555);
        record.BiaData.assign(used, 0x1111);
        EXPECT_EQ(record.LoadRawFile(), 0);
        ExpectZerosAfter(record, 5249664, 0);
    }
}

TEST(RawLoader, TheDarkFrameIsSubtractedDownToZero) {
    std::vector<std::uint16_t> dark = samples::FlatWords(200);
    constexpr std::array<std::uint16_t, 6> dark_values = {0, 1, 999, 1000, 1001, 65535};
    constexpr std::array<std::uint16_t, 6> expected = {1000, 999, 1, 0, 0, 0};
    std::ranges::copy(dark_values, dark.begin() + 54);
    std::ranges::copy(dark_values, dark.end() - 8 - 6);
    const ReadInputData record = Extracted(samples::FlatWords(1000), dark);
    ExpectSizes(record);
    const std::span image(record.ImageData);
    EXPECT_TRUE(std::ranges::equal(image.first(6), expected));
    EXPECT_TRUE(std::ranges::equal(image.last(6), expected));
    EXPECT_TRUE(std::ranges::all_of(image.subspan(6, kPixels - 12), [](auto value) { return value == 800; }));
}

TEST(RawLoader, EachPixelLosesItsOwnInTheDarkFrame) {
    const std::vector<std::uint16_t> dark = NumberedWords();
    const ReadInputData record = Extracted(samples::FlatWords(65535), dark);
    ExpectSizes(record);
    std::vector<std::uint16_t> sum(record.ImageData);
    for (std::size_t pixel = 0; pixel < sum.size(); ++pixel) {
        sum[pixel] = static_cast<std::uint16_t>(sum[pixel] + dark[54 + pixel / 3968 * 3976 + pixel % 3968]);
    }
    EXPECT_TRUE(std::ranges::all_of(sum, [](auto value) { return value == 65535; }));
}

TEST(RawLoader, ThePreviewIsTakenBeforeTheDarkFrameIsSubtracted) {
    const ReadInputData record = Extracted(samples::FlatWords(1600), samples::FlatWords(1600));
    EXPECT_EQ(record.ImageData.front(), 0);
    EXPECT_TRUE(std::ranges::all_of(record.PreviewData, [](auto value) { return value == 80; }));
}

TEST(RawLoader, WithoutSubtractionADarkFrameIsNotRead) {
    const support::TempFolder folder;
    support::WriteFile(folder / "X.RAW", EvenBytes(kBytes));
    support::WriteFile(folder / "X.BIA", EvenBytes(kBytes));
    ReadInputData record = RecordIn(folder);
    EXPECT_EQ(record.LoadRawFile(), 0);
    EXPECT_TRUE(record.BiaData.empty());
    EXPECT_EQ(record.ImageData.front(), 0x2121);
}

TEST(RawLoader, AMissingDarkFrameIsDamagedAndAShortOneIsNot) {
    const support::TempFolder folder;
    support::WriteFile(folder / "X.RAW", EvenBytes(kBytes));
    EXPECT_EQ(RecordIn(folder, true).LoadRawFile(), kBiaDamaged);

    // 60 words and a byte: the leading words and six and a half pixels.
    support::WriteFile(folder / "X.BIA", std::vector<std::uint8_t>(121, 0x20));
    ReadInputData record = RecordIn(folder, true);
    EXPECT_EQ(record.LoadRawFile(), 0);
    EXPECT_EQ(record.ImageData[5], 0x0101);
    EXPECT_EQ(record.ImageData[6], 0x2101);
    EXPECT_EQ(record.ImageData[7], 0x2121);
    EXPECT_EQ(record.ImageData.back(), 0x2121);
}

TEST(RawLoader, FilesThatCannotBeReadCompletelyAreErrors) {
    const std::string odd = support::kFileShorterThanItsLength;
    if (!std::filesystem::exists(odd)) {
        GTEST_SKIP() << odd << " does not exist";
    }
    const support::TempFolder folder;
    std::filesystem::create_symlink(odd, folder / "X.RAW");
    EXPECT_EQ(RecordIn(folder).LoadRawFile(), kRawUnreadable);
    std::filesystem::remove(folder / "X.RAW");
    support::WriteFile(folder / "X.RAW", EvenBytes(kBytes));
    std::filesystem::create_symlink(odd, folder / "X.BIA");
    EXPECT_EQ(RecordIn(folder, true).LoadRawFile(), kBiaDamaged);
}

TEST(RawLoader, ADarkFrameThatCannotBeReadIsToldBeforeADamagedRawFile) {
    const support::TempFolder folder;
    support::WriteFile(folder / "X.RAW", "x");
    EXPECT_EQ(RecordIn(folder, true).LoadRawFile(), kBiaDamaged);
    support::WriteFile(folder / "X.BIA", EvenBytes(kBytes));
    EXPECT_EQ(RecordIn(folder, true).LoadRawFile(), kRawDamaged);
}

TEST(RawLoader, TheDarkFrameIsReadUpToTheLengthOfTheRawFile) {
    const support::TempFolder folder;
    support::WriteFile(folder / "X.RAW", EvenBytes(kLeastBytes + 1));
    support::WriteFile(folder / "X.BIA", std::vector<std::uint8_t>(kBytes, 0x20));
    ReadInputData record = RecordIn(folder, true);
    EXPECT_EQ(record.LoadRawFile(), 0);
    // Both files have only the low byte of word 5249664: 0x21 - 0x20.
    EXPECT_EQ(record.ImageData[std::size_t{1320} * 3968 + 1290], 1);
}

TEST(RawLoader, OfLongerFilesTheWordsOfTheLayoutCount) {
    const support::TempFolder folder;
    support::WriteFile(folder / "X.RAW", EvenBytes(kBytes + 1000));
    support::WriteFile(folder / "X.BIA", EvenBytes(kBytes + 1000));
    ReadInputData record = RecordIn(folder, true);
    EXPECT_EQ(record.LoadRawFile(), 0);
    EXPECT_EQ(record.ImageData.size(), kPixels);
    EXPECT_TRUE(std::ranges::all_of(record.ImageData, [](auto value) { return value == 0; }));
}

TEST(RawLoader, OnlyAFewRowsOfTheDarkFrameAreInMemory) {
    const support::TempFolder folder;
    support::WriteFile(folder / "X.RAW", EvenBytes(kBytes));
    support::WriteFile(folder / "X.BIA", EvenBytes(kBytes));
    ReadInputData record = RecordIn(folder, true);
    EXPECT_EQ(record.LoadRawFile(), 0);
    EXPECT_LT(record.BiaData.capacity(), kWords / 20);
}

TEST(RawLoader, VerboseNamesTheFileAndEndsTheLineOnSuccess) {
    const support::TempFolder folder;
    ReadInputData record = RecordIn(folder, true);
    record.Verbose = true;
    const auto output = [&](int result) {
        return support::CaptureStdout([&] { EXPECT_EQ(record.LoadRawFile(), result); });
    };
    EXPECT_EQ(output(kRawNotFound), "Reading X.RAW...");
    support::WriteFile(folder / "X.RAW", "x");
    support::WriteFile(folder / "X.BIA", "x");
    EXPECT_EQ(output(kRawDamaged), "Reading X.RAW...");
    support::WriteFile(folder / "X.RAW", EvenBytes(kLeastBytes));
    EXPECT_EQ(output(0), "Reading X.RAW...Done!\n");
    std::filesystem::remove(folder / "X.BIA");
    EXPECT_EQ(output(kBiaDamaged), "Reading X.RAW...");
}

}  // namespace
