// SPDX-License-Identifier: MIT
#include "input/preview.h"

#include <algorithm>
#include <cmath>

#include "base/truncate.h"

namespace {

constexpr int kOdd = 1;
constexpr int kEven = 0;

/// Position of sample `index` on an axis sampled every `step` pixels: the first pixel with the wanted parity
/// among the pixel at or before the exact position, the one after, and the next. The exact position is
/// computed in single precision.
std::int32_t SamplePosition(std::int32_t index, float step, int parity) {
    const float exact = static_cast<float>(index) * step;
    const auto before = static_cast<std::int32_t>(std::floor(exact));
    if (before % 2 == parity) {
        return before;
    }
    const auto after = static_cast<std::int32_t>(std::ceil(exact));
    return after % 2 == parity ? after : after + 1;
}

/// The positions of `count` samples on an axis of `length` pixels, without those beyond its end.
std::vector<std::int32_t> SamplePositions(std::int32_t count, std::int32_t length, int parity) {
    const auto step = static_cast<float>(static_cast<double>(length) / count);
    std::vector<std::int32_t> positions;
    for (std::int32_t i = 0; i < count; ++i) {
        if (const std::int32_t position = SamplePosition(i, step, parity); position < length) {
            positions.push_back(position);
        }
    }
    return positions;
}

std::uint8_t Grey(Pixel value) {
    constexpr double white = 255.0;
    return Truncate<std::uint8_t>(std::min(std::sqrt(value * 4.0), white) + 0.5);
}

}  // namespace

PreviewSampler::PreviewSampler(std::int32_t width, std::int32_t height, std::span<std::uint8_t> preview)
    : columns_(SamplePositions(kWidth, width, kOdd)),
      rows_(SamplePositions(kHeight, height, kEven)),
      unfilled_(preview) {}

void PreviewSampler::AddRow(std::int32_t y, std::span<const Pixel> row) {
    if (next_row_ == rows_.size() || rows_[next_row_] != y) {
        return;
    }
    ++next_row_;
    for (const std::int32_t x : columns_) {
        const auto pixel = unfilled_.first(kBytesPerPixel);
        std::ranges::fill(pixel, Grey(row[static_cast<std::size_t>(x)]));
        unfilled_ = unfilled_.subspan(kBytesPerPixel);
    }
}
