// SPDX-License-Identifier: MIT
// Files whose end is missing, because the card was full or pulled out.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/error_codes.h"
#include "input/raw_layout.h"
#include "input/read_input_data.h"
#include "samples/camera_jpeg.h"
#include "samples/sensor_dump.h"
#include "tests/support/files.h"
#include "tests/support/test_pair.h"

namespace {

TEST(TruncatedJpeg, IsDamagedAtEveryLengthExceptTheEndOfItsThumbnail) {
    const auto jpeg = samples::CameraJpeg(samples::CameraExif({}));
    for (std::size_t length = 0; length < jpeg.size(); ++length) {
        SCOPED_TRACE(length);
        // A copy of exactly this length, so that a sanitizer detects a read beyond it.
        const std::vector<std::uint8_t> rest(jpeg.begin(),
                                             jpeg.begin() + static_cast<std::ptrdiff_t>(length));
        // The thumbnail, which ends like the file, is the last part of the EXIF block.
        const bool ends_like_a_jpeg = length >= 2 && rest[length - 2] == 0xFF && rest[length - 1] == 0xD9;
        EXIFInfo exif;
        EXPECT_EQ(exif.parseFrom(rest.data(), static_cast<unsigned int>(rest.size())) == 0, ends_like_a_jpeg);
    }
}

TEST(TruncatedJpeg, ThatStillEndsLikeAJpegIsRefusedOrRead) {
    const auto jpeg = samples::CameraJpeg(samples::CameraExif({}));
    std::size_t read = 0;
    for (std::size_t length = 4; length < jpeg.size(); ++length) {
        SCOPED_TRACE(length);
        std::vector<std::uint8_t> rest(jpeg.begin(), jpeg.begin() + static_cast<std::ptrdiff_t>(length));
        rest[length - 2] = 0xFF;
        rest[length - 1] = 0xD9;
        EXIFInfo exif;
        const int result = exif.parseFrom(rest.data(), static_cast<unsigned int>(rest.size()));
        EXPECT_TRUE(result == 0 || (result >= EXIFInfo::kNotAJpeg && result <= EXIFInfo::kCorruptExif))
            << result;
        read += result == 0 ? 1U : 0U;
    }
    EXPECT_GT(read, 0U);
}

TEST(TruncatedExifSegment, IsRefusedOrReadAtEveryLength) {
    const auto block = samples::Serialize(samples::CameraExif({}));
    int result = 0;
    for (std::size_t length = 0; length <= block.size(); ++length) {
        SCOPED_TRACE(length);
        const std::vector<std::uint8_t> rest(block.begin(),
                                             block.begin() + static_cast<std::ptrdiff_t>(length));
        EXIFInfo exif;
        result = exif.parseFromEXIFSegment(rest.data(), static_cast<unsigned int>(rest.size()));
        EXPECT_TRUE(result == 0 || (result >= EXIFInfo::kNotAJpeg && result <= EXIFInfo::kCorruptExif))
            << result;
    }
    EXPECT_EQ(result, 0) << "the whole segment";
}

/// 320 lengths of a RAW file: near the limits, at and next to row ends, and spread over the rest.
std::vector<std::size_t> RawLengths() {
    std::vector<std::size_t> lengths = {0, 1, 107, 108, 109, 10499327, 10499328, 10499329};
    constexpr std::size_t row_bytes = raw_layout::kRowWords * 2;
    for (std::size_t row = 1400; row < 2646; row += 16) {
        const std::size_t end = 108 + row * row_bytes;
        lengths.insert(lengths.end(), {end - 17, end - 16, end + 1});
    }
    for (std::size_t length = 4321; length < raw_layout::kFileBytes; length += 267801) {
        lengths.push_back(length);
    }
    lengths.push_back(raw_layout::kFileBytes - 1);
    std::ranges::sort(lengths, std::greater());
    return lengths;
}

TEST(TruncatedRaw, IsDamagedOrBlackWhereItEnds) {
    const support::TempFolder folder;
    support::WritePair(folder.path().string(), "A");
    const auto& words = support::TestWords();
    ReadInputData record;
    const auto lengths = RawLengths();
    ASSERT_GE(lengths.size(), 300U);
    for (const std::size_t length : lengths) {
        SCOPED_TRACE(length);
        std::filesystem::resize_file(folder / "A.RAW", length);
        const int result = record.ProcessFile(folder.prefix(), "A", false, false);
        if (length < 10499328) {
            ASSERT_EQ(result, kRawDamaged);
            continue;
        }
        ASSERT_EQ(result, 0);
        // The last complete word, the word that was cut, and the one after it, if they are pixels.
        for (std::size_t word = length / 2 - 1; word <= length / 2 + 1 && word < samples::kDumpWords;
             ++word) {
            const std::size_t row = (word - 54) / 3976;
            const std::size_t column = (word - 54) % 3976;
            if (column >= 3968) {
                continue;
            }
            const bool whole = word < length / 2;
            const bool cut = word == length / 2 && length % 2 != 0;
            const int expected = whole ? words[word] : cut ? words[word] & 0xFF : 0;
            EXPECT_EQ(record.ImageData[row * 3968 + column], expected)
                << "row " << row << ", column " << column;
        }
        const bool last_row_is_whole = length >= raw_layout::kFileBytes - 16;
        EXPECT_EQ(record.ImageData.back(), last_row_is_whole ? support::TestPixel(3967, 2645) : 0);
    }
}

}  // namespace
