// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_SIMULATED_SENSOR_H
#define VELMARCON_SAMPLES_SIMULATED_SENSOR_H

#include <cstdint>
#include <optional>
#include <vector>

#include "samples/sensor_dump.h"

namespace samples {

/// A defect: a part of one column, rows `first_row` to `end_row` - 1, that does not behave like the others.
struct SimulatedDefect {
    int column = 0;
    int first_row = 0;
    int end_row = kSensorHeight;
    float dark = 0;    ///< added in raw units at ISO 160; grows with the ISO gain
    float answer = 1;  ///< response to light, relative to a sound column
    /// The value it reads regardless of light and ISO speed.
    std::optional<std::uint16_t> stuck = std::nullopt;
};

/// How the dark levels vary from column to column.
enum class LevelPattern {
    kSmooth,    ///< broad bands plus a small random part per column
    kGaussian,  ///< an independent random level per column
    kRamp,      ///< rising from left to right
    kStep,      ///< the two halves, which are read out separately, differ
    kPairs,     ///< pairs of columns share a level
};

/// A sensor whose properties are known. Units are raw units at ISO 160. At a higher speed, levels, dark parts
/// of defects and hot pixels grow with the ISO gain, noise with its square root: 16 and 4 times at ISO 2500.
struct SimulatedSensor {
    std::uint64_t seed = 1;  ///< seed of everything that belongs to the sensor rather than to an exposure
    float black = 92;
    LevelPattern pattern = LevelPattern::kSmooth;
    float level_size = 3;        ///< spread of the levels
    float read_noise = 2.5F;     ///< standard deviation
    float row_noise = 0.6F;      ///< standard deviation of the offset that the pixels of half a row share
    float photon_gain = 0.3F;    ///< raw units per electron
    float gain_spread = 0.003F;  ///< standard deviation of the columns' responses to light, around 1
    int hot_pixels = 2000;
    int tracks = 12;  ///< particle tracks in one exposure
    int dust = 25;    ///< dust spots in a flat exposure
    std::vector<SimulatedDefect> defects = {};
};

/// One exposure.
struct SimulatedExposure {
    std::uint16_t iso = 160;
    std::uint64_t seed = 1;  ///< seed of its noise and its tracks
    /// Signal under the brightest filter in the middle, as a fraction of the range; 0: dark.
    float light = 0;
    float light_leak = 0;  ///< raw units in the upper right corner, fading to 0 half-way across
    int edge_column = 0;   ///< right of this column the light is a tenth weaker; 0: nowhere
};

/// The dark level of every column, without the defects, at ISO 160.
std::vector<float> ColumnDarkLevels(const SimulatedSensor& sensor);

/// `kSensorWidth` x `kSensorHeight` pixels, row by row, of an exposure of the sensor.
std::vector<std::uint16_t> ExposePixels(const SimulatedSensor& sensor, const SimulatedExposure& exposure);

/// `pixels` as the words of a `.RAW` file.
std::vector<std::uint16_t> WordsOfPixels(const std::vector<std::uint16_t>& pixels);

/// A random sensor: black level, pattern, noise and 14 defects of all kinds follow from `seed`. The weakest
/// dark defects add `weakest` raw units at ISO 160. Without `light_defects` all defects show in the dark.
SimulatedSensor RandomSensor(std::uint64_t seed, float weakest, bool light_defects);

/// A random sensor without defects, in which some columns are a few units higher than others throughout.
SimulatedSensor SoundSensor(std::uint64_t seed);

}  // namespace samples

#endif  // VELMARCON_SAMPLES_SIMULATED_SENSOR_H
