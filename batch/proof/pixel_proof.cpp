// SPDX-License-Identifier: MIT
// Loops over every pixel go through bare pointers: a check of each index would double their time.
#include "batch/proof/pixel_proof.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "sensor/iso_gain.h"
#include "sensor/sensor_frame.h"

namespace {

/// The largest number of the dither, which has 16 bits below 1.
constexpr float kMostDither = 65535.0F / 65536.0F;

/// What is subtracted for a level: its whole part, of which the low 16 bits count.
std::uint16_t Subtracted(float level) {
    return static_cast<std::uint16_t>(static_cast<std::int32_t>(level));
}

/// `level` where an int can hold it; else 0, which leaves a pixel as it is.
float Usable(float level) {
    constexpr float limit = 2147483648.0F;
    return std::abs(level) < limit ? level : 0.0F;
}

std::uint16_t Without(std::uint16_t pixel, std::uint16_t level) {
    return static_cast<std::uint16_t>(pixel - std::min(pixel, level));
}

}  // namespace

ColumnLevels DitheredLevels(std::span<const float> correction, int width, std::uint16_t iso) {
    using namespace sensor_frame;
    const std::size_t first = width == kCroppedWidth ? kCroppedLevelColumn : 0;
    ColumnLevels levels;
    if ((width != kFullWidth && width != kCroppedWidth) ||
        correction.size() < first + static_cast<std::size_t>(width)) {
        return levels;
    }
    const auto gain = static_cast<float>(IsoGain(iso));
    for (const float column : correction.subspan(first, static_cast<std::size_t>(width))) {
        const float level = Usable(column * gain);
        levels.least.push_back(Subtracted(level));
        levels.most.push_back(Subtracted(level + kMostDither));
    }
    return levels;
}

PixelProof::PixelProof(std::span<const std::uint8_t> image, std::size_t width, const ColumnLevels& levels)
    : image_(image), levels_(levels), row_(width) {}

bool PixelProof::Next(std::span<const std::uint16_t> row) {
    if (!difference_.empty()) {
        return false;
    }
    const auto written = image_.subspan(y_ * row.size_bytes(), row.size_bytes());
    bool right = false;
    if (levels_.empty()) {
        right = std::memcmp(written.data(), row.data(), written.size()) == 0;
    } else {
        std::memcpy(row_.data(), written.data(), written.size());
        right = IsWithinLevels(row);
    }
    if (!right) {
        std::memcpy(row_.data(), written.data(), written.size());
        Describe(row);
    }
    ++y_;
    return right;
}

bool PixelProof::IsWithinLevels(std::span<const std::uint16_t> row) const {
    const std::uint16_t* const written = row_.data();
    const std::uint16_t* const least = levels_.least.data();
    const std::uint16_t* const most = levels_.most.data();
    const std::uint16_t* const pixels = row.data();
    std::uint16_t wrong = 0;
    for (std::size_t x = 0; x < row.size(); ++x) {
        const bool right =
            written[x] == Without(pixels[x], least[x]) || written[x] == Without(pixels[x], most[x]);
        wrong |= static_cast<std::uint16_t>(right ? 0 : 1);
    }
    return wrong == 0;
}

void PixelProof::Describe(std::span<const std::uint16_t> row) {
    for (std::size_t x = 0; x < row.size(); ++x) {
        const std::uint16_t most = levels_.empty() ? row[x] : Without(row[x], levels_.least[x]);
        const std::uint16_t least = levels_.empty() ? row[x] : Without(row[x], levels_.most[x]);
        if (row_[x] != most && row_[x] != least) {
            difference_ = "pixel " + std::to_string(x) + " of row " + std::to_string(y_) + " is " +
                          std::to_string(row_[x]) + " instead of " +
                          (least == most ? "" : std::to_string(least) + " or ") + std::to_string(most);
            return;
        }
    }
}

void SubtractDark(std::span<const std::uint16_t> row, std::span<const std::uint16_t> dark,
                  std::span<std::uint16_t> difference) {
    const std::uint16_t* const pixels = row.data();
    const std::uint16_t* const levels = dark.data();
    std::uint16_t* const result = difference.data();
    for (std::size_t x = 0; x < row.size(); ++x) {
        result[x] = Without(pixels[x], levels[x]);
    }
}
