// SPDX-License-Identifier: MIT
#include "samples/simulated_sensor.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "samples/seeded_noise.h"

namespace samples {

namespace {

constexpr int kHalfWidth = kSensorWidth / 2;

// Each property of the sensor or of an exposure is drawn from a separate sequence, which has one of these
// numbers.
constexpr std::uint64_t kLevelSeed = 0x1E7E1;
constexpr std::uint64_t kBandSeed = 0xBA2D;
constexpr std::uint64_t kRaisedSeed = 0x4A15;
constexpr std::uint64_t kGainSeed = 0x6A12;
constexpr std::uint64_t kHotSeed = 0x407;
constexpr std::uint64_t kDustSeed = 0xD057;
constexpr std::uint64_t kDefectSeed = 0xDEFEC7;
constexpr std::uint64_t kModelSeed = 0x30DE1;
constexpr std::uint64_t kRowSeed = 0x4035;
constexpr std::uint64_t kTrackSeed = 0x74AC;

/// -1 to 1, in bands about 128 columns wide.
float Band(std::uint64_t seed, int column) {
    constexpr int kSpacing = 128;
    const auto knot = static_cast<std::uint64_t>(column / kSpacing);
    const float before = (2 * EvenNoise(seed, knot)) - 1;
    const float after = (2 * EvenNoise(seed, knot + 1)) - 1;
    const float way = static_cast<float>(column % kSpacing) / kSpacing;
    return before + ((after - before) * way * way * (3 - (2 * way)));
}

float Level(const SimulatedSensor& sensor, int column) {
    const auto index = static_cast<std::uint64_t>(column);
    const std::uint64_t own = sensor.seed ^ kLevelSeed;
    const float across = static_cast<float>(column) / kSensorWidth;
    switch (sensor.pattern) {
        case LevelPattern::kGaussian:
            return NormalNoise(own, index) / 3;
        case LevelPattern::kRamp:
            return (2 * across) - 1 + (0.15F * NormalNoise(own, index));
        case LevelPattern::kStep:
            return (column < kHalfWidth ? -1.0F : 1.0F) + (0.2F * NormalNoise(own, index));
        case LevelPattern::kPairs:
            return 0.3F * NormalNoise(own, index / 2);
        case LevelPattern::kSmooth:
            break;
    }
    return (0.6F * Band(sensor.seed ^ kBandSeed, column)) + (0.4F * ((2 * EvenNoise(own, index)) - 1));
}

float IsoGainOf(const SimulatedExposure& exposure) {
    return static_cast<float>(IsoGain(exposure.iso));
}

/// The image in the making: raw units, before rounding and clipping.
class Frame {
  public:
    explicit Frame(const SimulatedSensor& sensor, const SimulatedExposure& exposure)
        : sensor_(sensor), exposure_(exposure), gain_(IsoGainOf(exposure)), pixels_(kPixels) {}

    std::vector<std::uint16_t> Expose();

  private:
    static constexpr std::size_t kPixels = std::size_t{kSensorWidth} * kSensorHeight;

    struct Spot {
        float x, y, radius, depth;
    };

    void ReadRow(int y);
    void AddLight(int y);
    void AddLeak(int y);
    void AddHotPixels();
    void AddTracks();
    void AnswerOfDefects();
    void DrawDust();
    void StickDefects(std::vector<std::uint16_t>& image) const;
    float& At(int x, int y) {
        return pixels_[(static_cast<std::size_t>(y) * kSensorWidth) + static_cast<std::size_t>(x)];
    }
    void AddAt(int x, int y, float value) {
        if (x >= 0 && x < kSensorWidth && y >= 0 && y < kSensorHeight) {
            At(x, y) += value;
        }
    }

    const SimulatedSensor& sensor_;
    const SimulatedExposure& exposure_;
    float gain_;
    std::vector<float> pixels_;
};

/// The light of a bright, even area: it falls off towards the corners and passes the red, green and blue
/// filters.
void Frame::AddLight(int y) {
    constexpr float kRed = 0.5F;
    constexpr float kBlue = 0.8F;
    constexpr float kFallOff = 0.35F;  // in the corners
    const float even = y % 2 == 0 ? kRed : 1.0F;
    const float odd = y % 2 == 0 ? 1.0F : kBlue;
    const float down = (2 * static_cast<float>(y) / kSensorHeight) - 1;
    for (int x = 0; x < kSensorWidth; ++x) {
        const float across = (2 * static_cast<float>(x) / kSensorWidth) - 1;
        const float vignetting = 1 - (kFallOff * ((across * across) + (down * down)) / 2);
        const float edge = exposure_.edge_column != 0 && x >= exposure_.edge_column ? 0.9F : 1.0F;
        At(x, y) += exposure_.light * kSensorWhite * vignetting * edge * (x % 2 == 0 ? even : odd);
    }
}

void Frame::AddLeak(int y) {
    const float down = static_cast<float>(y) / kSensorHeight;
    for (int x = 0; x < kSensorWidth; ++x) {
        const float across = 1 - (static_cast<float>(x) / kSensorWidth);
        const float share = std::max(0.0F, 1 - (2 * std::sqrt((across * across) + (down * down))));
        At(x, y) += exposure_.light_leak * share;
    }
}

void Frame::DrawDust() {
    NumberSequence numbers(sensor_.seed ^ kDustSeed);
    for (int i = 0; i < sensor_.dust; ++i) {
        const Spot spot{numbers.Between(0, kSensorWidth), numbers.Between(0, kSensorHeight),
                        numbers.Between(4, 45), numbers.Between(0.03F, 0.25F)};
        const int reach = static_cast<int>(spot.radius) + 1;
        for (int dy = -reach; dy <= reach; ++dy) {
            for (int dx = -reach; dx <= reach; ++dx) {
                const int x = static_cast<int>(spot.x) + dx;
                const int y = static_cast<int>(spot.y) + dy;
                if (x < 0 || x >= kSensorWidth || y < 0 || y >= kSensorHeight) {
                    continue;
                }
                const auto distance = std::sqrt(static_cast<float>((dx * dx) + (dy * dy)));
                const float shade = std::clamp((spot.radius - distance) / (spot.radius / 4), 0.0F, 1.0F);
                At(x, y) *= 1 - (spot.depth * shade);
            }
        }
    }
}

void Frame::AnswerOfDefects() {
    for (const SimulatedDefect& defect : sensor_.defects) {
        for (int y = defect.first_row; y < defect.end_row; ++y) {
            At(defect.column, y) *= defect.answer;
        }
    }
}

/// Turns the light of row `y` into raw values.
void Frame::ReadRow(int y) {
    const auto row = static_cast<std::uint64_t>(y);
    const float grown = std::sqrt(gain_);
    const float left = sensor_.row_noise * grown * NormalNoise(exposure_.seed ^ kRowSeed, 2 * row);
    const float right = sensor_.row_noise * grown * NormalNoise(exposure_.seed ^ kRowSeed, (2 * row) + 1);
    const float read = sensor_.read_noise * sensor_.read_noise * gain_;
    const float photon = sensor_.photon_gain * gain_;
    const std::uint64_t first = row * kSensorWidth;
    float* const pixels = &At(0, y);
    for (int x = 0; x < kSensorWidth; ++x) {
        const float signal = pixels[x];
        const float noise = NormalNoise(exposure_.seed, first + static_cast<std::uint64_t>(x));
        pixels[x] = signal + (std::sqrt((photon * signal) + read) * noise) + (x < kHalfWidth ? left : right);
    }
}

void Frame::AddHotPixels() {
    NumberSequence numbers(sensor_.seed ^ kHotSeed);
    for (int i = 0; i < sensor_.hot_pixels; ++i) {
        const int x = numbers.Whole(0, kSensorWidth - 1);
        const int y = numbers.Whole(0, kSensorHeight - 1);
        const float rare = numbers.Between(0, 1);
        AddAt(x, y, (10 + (1500 * rare * rare * rare)) * gain_);
    }
}

void Frame::AddTracks() {
    NumberSequence numbers(exposure_.seed ^ kTrackSeed);
    for (int i = 0; i < sensor_.tracks; ++i) {
        const float x = numbers.Between(0, kSensorWidth);
        const float y = numbers.Between(0, kSensorHeight);
        // Every fourth track runs along a column.
        const float angle =
            i % 4 == 0 ? std::numbers::pi_v<float> / 2 : numbers.Between(0, std::numbers::pi_v<float>);
        const float length = numbers.Between(5, 90);
        const float strength = numbers.Between(20, 900) * gain_;
        for (int step = 0; static_cast<float>(step) < length; ++step) {
            const auto way = static_cast<float>(step);
            AddAt(static_cast<int>(x + (way * std::cos(angle))),
                  static_cast<int>(y + (way * std::sin(angle))), strength);
        }
    }
}

void Frame::StickDefects(std::vector<std::uint16_t>& image) const {
    for (const SimulatedDefect& defect : sensor_.defects) {
        for (int y = defect.first_row; defect.stuck && y < defect.end_row; ++y) {
            image[(static_cast<std::size_t>(y) * kSensorWidth) + static_cast<std::size_t>(defect.column)] =
                *defect.stuck;
        }
    }
}

std::vector<std::uint16_t> Frame::Expose() {
    if (exposure_.light > 0) {
        for (int y = 0; y < kSensorHeight; ++y) {
            AddLight(y);
        }
        DrawDust();
        for (int x = 0; x < kSensorWidth; ++x) {
            const float answer = 1 + (sensor_.gain_spread *
                                      NormalNoise(sensor_.seed ^ kGainSeed, static_cast<std::uint64_t>(x)));
            for (int y = 0; y < kSensorHeight; ++y) {
                At(x, y) *= answer;
            }
        }
        AnswerOfDefects();
    }
    if (exposure_.light_leak > 0) {
        for (int y = 0; y < kSensorHeight; ++y) {
            AddLeak(y);
        }
    }
    for (int y = 0; y < kSensorHeight; ++y) {
        ReadRow(y);
    }
    AddHotPixels();
    AddTracks();
    const std::vector<float> levels = ColumnDarkLevels(sensor_);
    for (int y = 0; y < kSensorHeight; ++y) {
        float* const row = &At(0, y);
        for (std::size_t x = 0; x < levels.size(); ++x) {
            row[x] += levels[x] * gain_;
        }
    }
    for (const SimulatedDefect& defect : sensor_.defects) {
        for (int y = defect.first_row; y < defect.end_row; ++y) {
            At(defect.column, y) += defect.dark * gain_;
        }
    }
    std::vector<std::uint16_t> image(kPixels);
    std::ranges::transform(pixels_, image.begin(), [](float value) {
        const float clipped = std::clamp(value, 0.0F, static_cast<float>(kSensorWhite));
        return static_cast<std::uint16_t>(std::lround(clipped));
    });
    StickDefects(image);
    return image;
}

/// Adds a defect unless its columns or the columns next to them are taken. Returns whether it was added.
bool AddDefect(SimulatedSensor& sensor, const SimulatedDefect& defect) {
    const bool taken = std::ranges::any_of(sensor.defects, [&](const SimulatedDefect& other) {
        return std::abs(other.column - defect.column) < 12;
    });
    if (!taken) {
        sensor.defects.push_back(defect);
    }
    return !taken;
}

void AddSomewhere(SimulatedSensor& sensor, NumberSequence& numbers, SimulatedDefect defect) {
    do {
        defect.column = numbers.Whole(0, kSensorWidth - 1);
    } while (!AddDefect(sensor, defect));
}

void DrawModel(SimulatedSensor& sensor) {
    NumberSequence numbers(sensor.seed ^ kModelSeed);
    sensor.black = numbers.Between(60, 140);
    sensor.pattern = static_cast<LevelPattern>(numbers.Whole(0, 4));
    sensor.level_size = numbers.Between(1.5F, 4);
    sensor.read_noise = numbers.Between(2, 6);
    sensor.row_noise = numbers.Between(0, 2);
    sensor.hot_pixels = numbers.Whole(500, 6000);
    sensor.gain_spread = numbers.Between(0.001F, 0.005F);
}

/// Eight defects that show in the dark, of all extents and strengths, including both edges of the sensor.
void AddDarkDefects(SimulatedSensor& sensor, NumberSequence& numbers, float weakest) {
    constexpr std::array<int, 4> kEdges = {0, 1, kSensorWidth - 2, kSensorWidth - 1};
    const int edge = numbers.Whole(0, 3);
    AddDefect(sensor, {.column = kEdges.at(static_cast<std::size_t>(edge)),
                       .first_row = numbers.Whole(200, 2300),
                       .dark = weakest * numbers.Between(1, 8)});
    AddSomewhere(sensor, numbers, {.first_row = numbers.Whole(100, 2500), .dark = weakest});
    AddSomewhere(sensor, numbers, {.first_row = numbers.Whole(100, 2500), .dark = numbers.Between(30, 3000)});
    AddSomewhere(sensor, numbers, {.end_row = numbers.Whole(120, 2500), .dark = weakest});
    const int from = numbers.Whole(50, 2000);
    AddSomewhere(sensor, numbers,
                 {.first_row = from, .end_row = from + numbers.Whole(100, 600), .dark = weakest * 1.2F});
    const int start = numbers.Whole(50, 2000);
    AddSomewhere(
        sensor, numbers,
        {.first_row = start, .end_row = start + numbers.Whole(100, 600), .dark = numbers.Between(20, 900)});
    AddSomewhere(sensor, numbers, {.dark = numbers.Between(60, 400)});
    // Two adjacent defects that start in different rows.
    AddSomewhere(sensor, numbers, {.first_row = numbers.Whole(300, 1500), .dark = weakest * 3});
    SimulatedDefect next = sensor.defects.back();
    next.column += next.column + 1 < kSensorWidth ? 1 : -1;
    next.first_row += 400;
    sensor.defects.push_back(next);
}

void AddStuckDefects(SimulatedSensor& sensor, NumberSequence& numbers) {
    AddSomewhere(sensor, numbers, {.stuck = std::uint16_t{0}});
    AddSomewhere(sensor, numbers, {.first_row = numbers.Whole(100, 2400), .stuck = kSensorWhite});
}

void AddLightDefects(SimulatedSensor& sensor, NumberSequence& numbers) {
    AddSomewhere(sensor, numbers, {.answer = 0});
    AddSomewhere(sensor, numbers,
                 {.first_row = numbers.Whole(200, 2300), .answer = numbers.Between(0.3F, 0.9F)});
    AddSomewhere(sensor, numbers, {.answer = numbers.Between(0.94F, 0.965F)});
}

}  // namespace

std::vector<float> ColumnDarkLevels(const SimulatedSensor& sensor) {
    std::vector<float> levels(kSensorWidth);
    for (int x = 0; x < kSensorWidth; ++x) {
        levels[static_cast<std::size_t>(x)] = sensor.black + (sensor.level_size * Level(sensor, x));
    }
    return levels;
}

std::vector<std::uint16_t> ExposePixels(const SimulatedSensor& sensor, const SimulatedExposure& exposure) {
    return Frame(sensor, exposure).Expose();
}

std::vector<std::uint16_t> WordsOfPixels(const std::vector<std::uint16_t>& pixels) {
    std::vector<std::uint16_t> words(kDumpWords);
    for (std::size_t y = 0; y < kSensorHeight; ++y) {
        std::copy_n(pixels.begin() + static_cast<std::ptrdiff_t>(y * kSensorWidth), kSensorWidth,
                    words.begin() + static_cast<std::ptrdiff_t>(WordIndex(0, static_cast<int>(y))));
    }
    return words;
}

SimulatedSensor RandomSensor(std::uint64_t seed, float weakest, bool light_defects) {
    SimulatedSensor sensor;
    sensor.seed = seed;
    DrawModel(sensor);
    NumberSequence numbers(seed ^ kDefectSeed);
    AddDarkDefects(sensor, numbers, weakest);
    AddStuckDefects(sensor, numbers);
    if (light_defects) {
        AddLightDefects(sensor, numbers);
    } else {
        AddSomewhere(sensor, numbers, {.first_row = numbers.Whole(100, 1500), .dark = weakest * 1.5F});
        AddSomewhere(sensor, numbers, {.end_row = numbers.Whole(500, 2500), .dark = weakest * 2});
        AddSomewhere(sensor, numbers, {.first_row = numbers.Whole(2000, 2500), .stuck = std::uint16_t{0}});
    }
    return sensor;
}

SimulatedSensor SoundSensor(std::uint64_t seed) {
    SimulatedSensor sensor;
    sensor.seed = seed;
    DrawModel(sensor);
    NumberSequence numbers(seed ^ kRaisedSeed);
    for (int i = 0; i < 6; ++i) {
        AddSomewhere(sensor, numbers, {.dark = numbers.Between(2, 4.5F)});
    }
    return sensor;
}

}  // namespace samples
