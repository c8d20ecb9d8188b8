// SPDX-License-Identifier: MIT
// Reads the text of sensdb.ini, applies it to a small image, writes it and reads it back.
#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

#include "fuzz/fuzz_target.h"
#include "fuzz/input_bytes.h"
#include "fuzz/require.h"
#include "fuzz/scratch_folder.h"
#include "input/read_input_data.h"
#include "sensor/reported_corrections.h"
#include "sensor/sensdb.h"
#include "sensor/sensor_frame.h"

namespace {

using Pixels = std::vector<std::uint16_t>;

constexpr int kHeight = 6;

/// How to apply the database, from the input's first two bytes.
struct Mode {
    int width;
    std::uint16_t iso;
    bool test;
    bool estimate;
    bool all_columns;  ///< give the camera as many levels as the sensor has columns
    bool create;       ///< make new levels from the image
    std::uint16_t brightness;

    explicit Mode(InputBytes& input) {
        const std::uint8_t bits = input.NextByte();
        constexpr std::array<int, 4> widths = {sensor_frame::kFullWidth, sensor_frame::kCroppedWidth, 2, 5};
        constexpr std::array<std::uint16_t, 4> speeds = {320, 640, 1250, 2500};
        width = widths.at(bits & 3U);
        iso = speeds.at(bits >> 2U & 3U);
        test = Bit(bits, 4);
        estimate = Bit(bits, 5);
        all_columns = Bit(bits, 6);
        create = Bit(bits, 7);
        brightness = input.NextByte();
    }
};

/// An image in which neighbouring pixels differ; the darkest are around `brightness`.
Pixels Image(const Mode& mode) {
    Pixels pixels(static_cast<std::size_t>(mode.width) * kHeight);
    std::uint32_t step = 0;
    for (std::uint16_t& pixel : pixels) {
        pixel = static_cast<std::uint16_t>(mode.brightness + step++ * 7 % 61);
    }
    return pixels;
}

/// The camera whose levels are used: the first one with values, so that any section name will do.
std::uint32_t AnyCamera(const sensdb& sensors) {
    return sensors.Cameras.empty() ? 0 : static_cast<std::uint32_t>(sensors.Cameras.begin()->first);
}

/// Repeats the camera's levels over all columns of the sensor, because a fuzzer does not come up with four
/// thousand lines.
void FillColumns(sensdb::Sensdbtype& camera) {
    auto& levels = camera.LevelCorrection;
    for (std::size_t i = 0; !levels.empty() && levels.size() < sensor_frame::kFullWidth; ++i) {
        levels.push_back(levels[i]);
    }
}

void Apply(const Mode& mode, std::uint32_t serial, sensdb& sensors) {
    Pixels pixels = Image(mode);
    const Pixels before = pixels;
    ReportedCorrections corrections({serial, mode.iso, &pixels, mode.width, kHeight}, sensors, true);
    corrections.FixPixelLines(mode.test);
    const sensdb::Sensdbtype camera = sensors.Camera(serial);
    Require(camera.Line.size() >= sensdb::Sensdbtype::kLineGroup || pixels == before,
            "without defects no pixel changes");
    const bool corrected = corrections.FixDarkField(mode.estimate);
    Require(corrected == !camera.LevelCorrection.empty(), "only a camera with levels is corrected");
    Require(pixels.size() == before.size(), "an image keeps its size");
}

/// Makes new levels from an image of the dark.
void Create(const Mode& mode, std::uint32_t serial, sensdb& sensors) {
    ReadInputData record;
    record.Exif.SerialNumber = serial;
    record.Width = mode.width;
    record.Height = kHeight;
    record.ImageData = Image(mode);
    Require(sensors.CalcSensLevel(&record) == 0, "levels can be made from every image");
    Require(sensors.Camera(serial).LevelCorrection.size() == static_cast<std::size_t>(mode.width),
            "each column has a level");
}

/// Whether `read` is `written` rounded to six decimals.
bool SameLevel(float written, float read) {
    if (std::isnan(written)) {
        return std::isnan(read);
    }
    constexpr double half_unit = 0.5000001e-6;
    const double difference = static_cast<double>(written) - static_cast<double>(read);
    // Where single precision is coarser than six decimals, the number comes back unchanged.
    return written == read ||
           std::abs(difference) <= half_unit + std::abs(static_cast<double>(written)) * 6e-8;
}

void RequireSame(const sensdb::Sensdbtype& written, const sensdb::Sensdbtype& read) {
    Require(written.Line == read.Line, "defects come back as they were written");
    Require(written.LevelCorrection.size() == read.LevelCorrection.size(), "all levels come back");
    for (std::size_t i = 0; i < read.LevelCorrection.size(); ++i) {
        Require(SameLevel(written.LevelCorrection[i], read.LevelCorrection[i]),
                "a level comes back to six decimals");
    }
}

/// Writes the cameras as a new database, because a database that could not be read completely is never
/// overwritten.
void WriteAndReadBack(const ScratchFolder& folder, const sensdb& sensors) {
    folder.Remove("sensdb.ini");  // a new file is not flushed to disk, a replaced one is
    sensdb writer(folder.prefix());
    writer.Cameras = sensors.Cameras;
    Require(writer.WriteSensData() == 0, "every database can be written");
    sensdb again(folder.prefix());
    const int result = again.LoadSensData();
    std::size_t with_values = 0;
    for (const auto& [serial, camera] : sensors.Cameras) {
        if (!camera.Line.empty() || !camera.LevelCorrection.empty()) {
            ++with_values;
            RequireSame(camera, again.Camera(static_cast<std::uint32_t>(serial)));
        }
    }
    Require(result == 0 || with_values == 0, "a written database can be read");
    Require(again.Cameras.size() == with_values, "cameras without values are left out");
}

/// Not-a-numbers, which a text can hold, are the same as themselves.
bool SameBits(const std::vector<float>& a, const std::vector<float>& b) {
    return std::ranges::equal(
        a, b, {}, [](float value) { return std::bit_cast<std::uint32_t>(value); },
        [](float value) { return std::bit_cast<std::uint32_t>(value); });
}

/// The camera by itself is what it is among all.
void RequireSameByItself(const ScratchFolder& folder, std::uint32_t serial, const sensdb& sensors) {
    sensdb alone(folder.prefix());
    Require(alone.LoadCamera(serial) == 0, "one camera can be read where all can");
    const auto known = sensors.Cameras.find(static_cast<int>(serial));
    const auto found = alone.Cameras.find(static_cast<int>(serial));
    Require(alone.Cameras.size() == (known == sensors.Cameras.end() ? 0 : 1), "no other camera is taken");
    if (known != sensors.Cameras.end()) {
        Require(found != alone.Cameras.end() && found->second.Line == known->second.Line &&
                    SameBits(found->second.LevelCorrection, known->second.LevelCorrection),
                "one camera reads as it does among all");
    }
}

}  // namespace

void FuzzInput(std::span<const std::uint8_t> bytes) {
    static const ScratchFolder folder;
    InputBytes input(bytes);
    const Mode mode(input);
    folder.Write("sensdb.ini", input.Rest());
    sensdb sensors(folder.prefix());
    if (sensors.LoadSensData() != 0) {
        Require(sensors.Cameras.empty(), "an unreadable file yields no cameras");
        return;
    }
    const std::uint32_t serial = AnyCamera(sensors);
    // Each takes a reading of the file.
    int looked_at = 4;
    for (const auto& [number, camera] : sensors.Cameras) {
        if (looked_at-- == 0) {
            break;
        }
        RequireSameByItself(folder, static_cast<std::uint32_t>(number), sensors);
    }
    if (mode.create) {
        Create(mode, serial, sensors);
    }
    // Levels for a whole sensor take longer to write than everything else, and differ from those of a small
    // image only in number.
    if (!mode.create || mode.width < sensor_frame::kCroppedWidth) {
        WriteAndReadBack(folder, sensors);
    }
    if (mode.all_columns) {
        FillColumns(sensors.Camera(serial));
    }
    Apply(mode, serial, sensors);
}
