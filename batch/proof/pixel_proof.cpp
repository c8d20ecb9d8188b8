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

bool IsWithinLevels(std::span<const std::uint16_t> written, std::span<const std::uint16_t> expected,
                    const ColumnLevels& levels) {
    const std::uint16_t* const pixels = written.data();
    const std::uint16_t* const undarkened = expected.data();
    const std::uint16_t* const least = levels.least.data();
    const std::uint16_t* const most = levels.most.data();
    std::uint16_t wrong = 0;
    for (std::size_t x = 0; x < expected.size(); ++x) {
        // Bits, which need no jump: 0 where the pixel is as it must be.
        const auto not_most = static_cast<std::uint16_t>(pixels[x] ^ Without(undarkened[x], least[x]));
        const auto not_least = static_cast<std::uint16_t>(pixels[x] ^ Without(undarkened[x], most[x]));
        wrong = static_cast<std::uint16_t>(wrong | std::min(not_most, not_least));
    }
    return wrong == 0;
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

bool PixelProof::Next(std::span<const std::uint16_t> written, std::span<const std::uint16_t> expected) {
    const bool right = levels_.empty()
                           ? std::memcmp(written.data(), expected.data(), expected.size_bytes()) == 0
                           : IsWithinLevels(written, expected, levels_);
    if (!right) {
        Describe(written, expected);
    }
    ++y_;
    return right;
}

void PixelProof::Describe(std::span<const std::uint16_t> written, std::span<const std::uint16_t> expected) {
    for (std::size_t x = 0; x < expected.size(); ++x) {
        const std::uint16_t pixel = expected[x];
        const std::uint16_t most = levels_.empty() ? pixel : Without(pixel, levels_.least[x]);
        const std::uint16_t least = levels_.empty() ? pixel : Without(pixel, levels_.most[x]);
        if (written[x] != most && written[x] != least) {
            difference_ = "pixel " + std::to_string(x) + " of row " + std::to_string(y_) + " is " +
                          std::to_string(written[x]) + " instead of " +
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
