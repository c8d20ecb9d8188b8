// SPDX-License-Identifier: MIT
#include "input/preview.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "input/read_input_data.h"
#include "tests/support/test_pair.h"

namespace {

constexpr int kWidth = 3968;
constexpr int kHeight = 2646;
constexpr std::size_t kPreviewBytes = 230400;

using Row = std::vector<std::uint16_t>;

/// Byte index of pixel (`column`, `row`) of the preview.
constexpr std::size_t PreviewIndex(std::size_t column, std::size_t row) {
    return (row * 320 + column) * 3;
}

/// The preview of an image in which row y is `row_of(y)`.
template <typename RowOf>
std::vector<std::uint8_t> PreviewOf(RowOf row_of) {
    std::vector<std::uint8_t> preview(kPreviewBytes, 7);
    PreviewSampler sampler(kWidth, kHeight, preview);
    for (int y = 0; y < kHeight; ++y) {
        sampler.AddRow(y, row_of(y));
    }
    return preview;
}

/// The first byte of the preview if every pixel is `value`.
int Grey(std::uint16_t value) {
    const Row row(kWidth, value);
    std::vector<std::uint8_t> preview(kPreviewBytes);
    PreviewSampler(kWidth, kHeight, preview).AddRow(0, row);
    EXPECT_EQ(preview[0], preview[1]);
    EXPECT_EQ(preview[0], preview[2]);
    return preview[0];
}

/// The definition of the preview, pixel by pixel: decides which columns and rows to sample while walking over
/// the whole image. `words` is a sensor dump.
std::vector<std::uint8_t> PixelwisePreview(const std::vector<std::uint16_t>& words) {
    const auto fx = static_cast<float>(kWidth / 320.0);
    const auto fy = static_cast<float>(kHeight / 240.0);
    std::vector<std::uint8_t> preview;
    int k = 0;
    int r = 0;
    for (int y = 0; y < kHeight; ++y) {
        int c = 0;
        for (int x = 0; x < kWidth && y == r; ++x) {
            int candidate = static_cast<int>(std::floor(static_cast<float>(c) * fx));
            if (candidate % 2 == 0) {
                candidate = static_cast<int>(std::ceil(static_cast<float>(c) * fx));
                if (candidate % 2 == 0) {
                    candidate += 1;
                }
            }
            if (x == candidate) {
                c += 1;
                const auto v = words[54 + static_cast<std::size_t>(y) * 3976 + static_cast<std::size_t>(x)];
                const double grey = std::min(std::sqrt(v * 4.0), 255.0) + 0.5;
                preview.insert(preview.end(), 3, static_cast<std::uint8_t>(grey));
            }
        }
        if (y == r) {
            k += 1;
            r = static_cast<int>(std::floor(static_cast<float>(k) * fy));
            if (r % 2 != 0) {
                r = static_cast<int>(std::ceil(static_cast<float>(k) * fy));
                if (r % 2 != 0) {
                    r += 1;
                }
            }
        }
    }
    return preview;
}

TEST(Preview, EqualsItsDefinitionPixelByPixel) {
    ReadInputData record;
    record.ImageData = support::TestWords();
    record.ImageSize = 21041100;
    ASSERT_EQ(record.ExtractRawImage(), 0);
    const auto expected = PixelwisePreview(support::TestWords());
    ASSERT_EQ(expected.size(), kPreviewBytes);
    ASSERT_EQ(record.PreviewData.size(), kPreviewBytes);
    EXPECT_TRUE(record.PreviewData == expected);
}

struct Curve {
    std::uint16_t value;
    int grey;
};

constexpr std::array<Curve, 12> kCurve = {{
    {0, 0},
    {1, 2},
    {2, 3},
    {4, 4},
    {14, 7},  // 7.48
    {15, 8},  // 7.75
    {100, 20},
    {4096, 128},
    {16000, 253},  // 252.98
    {16256, 255},  // 254.998
    {16383, 255},
    {65535, 255},
}};

TEST(Preview, TheCurveIsASquareRootLimitedTo255) {
    for (const auto& [value, grey] : kCurve) {
        EXPECT_EQ(Grey(value), grey) << value;
    }
}

TEST(Preview, EvenRowsAreSampled) {
    const Row black(kWidth, 0);
    const Row white(kWidth, 16383);
    constexpr std::array<int, 7> white_rows = {0, 12, 22, 34, 44, 56, 2634};
    const auto preview = PreviewOf(
        [&](int y) { return std::ranges::find(white_rows, y) != white_rows.end() ? white : black; });
    for (std::size_t row = 0; row < 240; ++row) {
        const int expected = row < 6 || row == 239 ? 255 : 0;
        EXPECT_EQ(preview[PreviewIndex(0, row)], expected) << row;
        EXPECT_EQ(preview[PreviewIndex(319, row)], expected) << row;
    }
}

TEST(Preview, OddColumnsAreSampled) {
    Row row(kWidth, 0);
    // 62 is 5 x 12.4 in single precision only.
    for (const std::size_t x : {1U, 13U, 25U, 37U, 49U, 63U, 75U, 87U, 3955U}) {
        row[x] = 16383;
    }
    const auto preview = PreviewOf([&](int) { return row; });
    for (std::size_t column = 0; column < 320; ++column) {
        const int expected = column < 8 || column == 319 ? 255 : 0;
        EXPECT_EQ(preview[PreviewIndex(column, 0)], expected) << column;
        EXPECT_EQ(preview[PreviewIndex(column, 239)], expected) << column;
    }
}

TEST(Preview, OnlySampledPixelsCount) {
    Row odd_columns(kWidth, 0);
    for (std::size_t x = 1; x < odd_columns.size(); x += 2) {
        odd_columns[x] = 16383;
    }
    const Row black(kWidth, 0);
    const auto preview = PreviewOf([&](int y) { return y % 2 == 0 ? odd_columns : black; });
    EXPECT_TRUE(std::ranges::all_of(preview, [](auto byte) { return byte == 255; }));
}

TEST(Preview, SamplesOutsideTheImageAreNotTaken) {
    // Column 319 of 320, at a step of 1, is odd, but row 239 of 240 would have to become row 240.
    const Row white(320, 16383);
    std::vector<std::uint8_t> preview(kPreviewBytes, 7);
    PreviewSampler sampler(320, 240, preview);
    for (int y = 0; y < 240; ++y) {
        sampler.AddRow(y, white);
    }
    EXPECT_EQ(preview.front(), 255);
    EXPECT_EQ(preview.back(), 7);
}

TEST(Preview, OfAnImageOfOneColumnHasNoSamples) {
    // The first odd column would lie right of the image.
    std::vector<std::uint8_t> preview(kPreviewBytes, 7);
    PreviewSampler sampler(1, 240, preview);
    for (int y = 0; y < 240; ++y) {
        sampler.AddRow(y, Row(1, 16383));
    }
    EXPECT_TRUE(std::ranges::all_of(preview, [](auto byte) { return byte == 7; }));
}

}  // namespace
