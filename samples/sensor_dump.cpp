// SPDX-License-Identifier: MIT
#include "samples/sensor_dump.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "base/byte_order.h"
#include "samples/seeded_noise.h"

namespace samples {

namespace {

using Matrix = std::array<std::array<double, 3>, 3>;

// ColorMatrix2 from the camera's own DNGs (XYZ to camera, D65), and sRGB to XYZ (IEC 61966-2-1).
constexpr Matrix kXyzToCamera = {
    {{0.7675, -0.2195, -0.0305}, {-0.5860, 1.4118, 0.1857}, {-0.2425, 0.4007, 0.6578}}};
constexpr Matrix kSrgbToXyz = {
    {{0.4124, 0.3576, 0.1805}, {0.2126, 0.7152, 0.0722}, {0.0193, 0.1192, 0.9505}}};

constexpr std::array<double, 3> kNeutral = {16384.0 / 34488, 1,
                                            16384.0 / 20567};  // raw white over green white
constexpr double kWhiteSignal = 0.75 * kSensorWhite;           // green, without dark level

/// Converts linear sRGB to raw units: the camera's matrix, each row scaled so that white sums to 1 (as a
/// developer balances to white first), divided by the balance again, times the exposure.
Matrix RawFromSrgb() {
    Matrix raw = {};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            for (std::size_t i = 0; i < 3; ++i) {
                raw.at(row).at(column) += kXyzToCamera.at(row).at(i) * kSrgbToXyz.at(i).at(column);
            }
        }
        const double sum = std::accumulate(raw.at(row).begin(), raw.at(row).end(), 0.0);
        for (double& factor : raw.at(row)) {
            factor *= kNeutral.at(row) * kWhiteSignal / sum;
        }
    }
    return raw;
}

/// The colour filter at (x, y) as an index into red, green, blue: red at (0, 0), blue at (1, 1).
constexpr std::size_t FilterAt(std::size_t x, std::size_t y) {
    return (x & 1U) + (y & 1U);
}

/// Uniformly distributed from -1 to 1.
float Even(std::uint64_t seed, std::uint64_t index) {
    return (2 * EvenNoise(seed, index)) - 1;
}

/// The column pattern, -1 to 1: random values every 128 columns joined smoothly, plus a smaller one for each
/// column.
float Pattern(std::uint64_t seed, std::uint64_t column) {
    constexpr std::uint64_t kSpacing = 128;
    constexpr std::uint64_t kSmoothSeed = 0x5EED;
    constexpr float kSmoothShare = 0.6F;
    const float before = Even(seed ^ kSmoothSeed, column / kSpacing);
    const float after = Even(seed ^ kSmoothSeed, (column / kSpacing) + 1);
    const float way = static_cast<float>(column % kSpacing) / static_cast<float>(kSpacing);
    const float smooth = before + ((after - before) * way * way * (3 - (2 * way)));
    return (kSmoothShare * smooth) + ((1 - kSmoothShare) * Even(seed, column));
}

std::uint16_t ToWord(float level) {
    const float clipped = std::clamp(level, 0.0F, static_cast<float>(kSensorWhite));
    // Added and truncated: unlike lround this vectorises, and no level is negative.
    constexpr float kHalf = 0.5F;
    return static_cast<std::uint16_t>(static_cast<std::int32_t>(clipped + kHalf));
}

float OffsetAt(const std::vector<float>& offsets, std::size_t row) {
    return row < offsets.size() ? offsets[row] : 0.0F;
}

/// What one exposure adds to the light, in raw units at its ISO speed.
struct Readout {
    std::vector<float> column_levels;
    float gain;
    float photon_gain;    ///< 0 without noise
    float read_variance;  ///< 0 without noise
    std::uint64_t seed;
};

Readout ReadoutOf(const SensorOptions& options) {
    const auto gain = static_cast<float>(IsoGain(options.iso));
    const float noise = options.noise ? gain : 0.0F;
    const float read = options.read_noise * noise;
    return {.column_levels = ColumnDarkLevels(options),
            .gain = gain,
            .photon_gain = options.photon_gain * noise,
            .read_variance = read * read,
            .seed = options.seed};
}

/// Reads out one half of a row: pixels `first` and up of the frame, which are columns `first_column` and up
/// of the row.
void ReadHalfRow(const Readout& readout, const float* light, std::size_t first, std::size_t first_column,
                 float offset, std::span<std::uint16_t> out) {
    for (std::size_t i = 0; i < out.size(); ++i) {
        const float signal = light == nullptr ? 0.0F : light[first + i];
        const float deviation = std::sqrt((readout.photon_gain * signal) + readout.read_variance);
        const float noise = deviation * NormalNoise(readout.seed, first + i);
        out[i] = ToWord(signal + readout.column_levels[first_column + i] + offset + noise);
    }
}

void MarkDefects(const SensorOptions& options, std::span<std::uint16_t> words) {
    const auto gain = static_cast<float>(IsoGain(options.iso));
    for (const ColumnDefect& defect : options.defects) {
        for (int y = defect.first_row; y < std::min(defect.end_row, kSensorHeight); ++y) {
            std::uint16_t& word = words[WordIndex(defect.column, y)];
            word = ToWord(defect.adds ? static_cast<float>(word) + (defect.level * gain) : defect.level);
        }
    }
}

}  // namespace

int IsoGain(std::uint16_t iso) {
    switch (iso) {
        case 320:
            return 2;
        case 640:
            return 4;
        case 1250:
            return 8;
        case 2500:
            return 16;
        default:
            return 1;
    }
}

std::vector<float> ExposeSensor(const Scene& scene) {
    const Matrix raw = RawFromSrgb();
    const auto width = static_cast<std::size_t>(scene.Width());
    std::vector<LinearRgb> row(width);
    std::vector<float> light;
    light.reserve(width * static_cast<std::size_t>(scene.Height()));
    for (int y = 0; y < scene.Height(); ++y) {
        scene.DrawRow(y, row);
        for (std::size_t x = 0; x < width; ++x) {
            const auto& factors = raw[FilterAt(x, static_cast<std::size_t>(y))];
            double sum = 0;
            for (std::size_t i = 0; i < 3; ++i) {
                sum += factors[i] * static_cast<double>(row[x][i]);
            }
            light.push_back(static_cast<float>(std::max(sum, 0.0)));
        }
    }
    return light;
}

std::vector<float> ColumnDarkLevels(const SensorOptions& options) {
    std::vector<float> levels(kSensorWidth);
    for (std::size_t x = 0; x < levels.size(); ++x) {
        const float level = options.dark_level + (options.column_pattern * Pattern(options.column_seed, x));
        levels[x] = level * static_cast<float>(IsoGain(options.iso));
    }
    return levels;
}

std::vector<std::uint16_t> Words(std::span<const float> light, const SensorOptions& options) {
    constexpr std::size_t kHalf = kSensorWidth / 2;
    const Readout readout = ReadoutOf(options);
    const float* const pixels = light.empty() ? nullptr : light.data();
    std::vector<std::uint16_t> words(kDumpWords, ToWord(options.dark_level * readout.gain));
    for (std::size_t y = 0; y < kSensorHeight; ++y) {
        const std::size_t first = y * kSensorWidth;
        const std::span<std::uint16_t> row =
            std::span(words).subspan(kLeadingWords + (y * kRowWords), kSensorWidth);
        ReadHalfRow(readout, pixels, first, 0, OffsetAt(options.left_row_offsets, y) * readout.gain,
                    row.first(kHalf));
        ReadHalfRow(readout, pixels, first + kHalf, kHalf,
                    OffsetAt(options.right_row_offsets, y) * readout.gain, row.last(kHalf));
    }
    MarkDefects(options, words);
    return words;
}

std::vector<std::uint16_t> DarkWords(const SensorOptions& options) {
    return Words({}, options);
}

std::vector<std::uint16_t> FlatWords(std::uint16_t value) {
    constexpr std::uint16_t kOutside = 0xAAAA;
    std::vector<std::uint16_t> words(kDumpWords, kOutside);
    for (int y = 0; y < kSensorHeight; ++y) {
        std::ranges::fill(std::span(words).subspan(WordIndex(0, y), kSensorWidth), value);
    }
    return words;
}

std::vector<std::uint8_t> DumpBytes(std::span<const std::uint16_t> words) {
    std::vector<std::uint8_t> bytes(2 * words.size());
    for (std::size_t i = 0; i < words.size(); ++i) {
        byte_order::PutLittle(std::span(bytes).subspan(2 * i, 2), words[i]);
    }
    return bytes;
}

std::array<std::uint16_t, 256> LinearizationTable() {
    std::array<std::uint16_t, 256> table = {};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        table.at(i) = static_cast<std::uint16_t>(i * i / 4);
    }
    return table;
}

std::vector<std::uint8_t> CroppedBytes(std::span<const std::uint16_t> words) {
    const std::array<std::uint16_t, 256> table = LinearizationTable();
    std::vector<std::uint8_t> index_of(kSensorWhite + 1);
    std::size_t index = 0;
    for (std::size_t value = 0; value < index_of.size(); ++value) {
        while (index + 1 < table.size() &&
               value + value > std::size_t{table.at(index)} + table.at(index + 1)) {
            ++index;
        }
        index_of[value] = static_cast<std::uint8_t>(index);
    }
    std::vector<std::uint8_t> bytes;
    bytes.reserve(std::size_t{kCroppedWidth} * kCroppedHeight);
    for (int y = 0; y < kCroppedHeight; ++y) {
        for (const std::uint16_t word : words.subspan(WordIndex(kCropLeft, y + kCropTop), kCroppedWidth)) {
            bytes.push_back(index_of[std::min(word, kSensorWhite)]);
        }
    }
    return bytes;
}

}  // namespace samples
