// SPDX-License-Identifier: MIT
#include "samples/sensor_exposures.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <system_error>

#include "samples/camera_jpeg.h"
#include "samples/file_writer.h"
#include "samples/simulated_sensor.h"

namespace samples {

namespace {

/// Writes one pair. Returns what failed, or an empty text.
std::string WritePair(const std::string& base, const SimulatedSensor& sensor,
                      const SimulatedExposure& exposure, int serial) {
    Shot shot;
    shot.iso = exposure.iso;
    shot.serial_number = static_cast<std::uint32_t>(serial);
    std::string failed = WriteFile(base + ".JPG", CameraJpeg(CameraExif(shot)), true);
    if (failed.empty()) {
        const auto words = WordsOfPixels(ExposePixels(sensor, exposure));
        failed = WriteFile(base + ".RAW", DumpBytes(words), true);
    }
    return failed;
}

/// Exposures of one kind.
struct Series {
    const char* folder;
    int count;
    std::uint16_t iso;
    float light;
};

std::string WriteTruth(const std::string& path, const SimulatedSensor& sensor) {
    std::string text;
    for (const SimulatedDefect& defect : sensor.defects) {
        text += std::to_string(defect.column) + " " + std::to_string(defect.first_row) + " " +
                std::to_string(defect.end_row) + "\n";
    }
    return WriteFile(path, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}, true);
}

}  // namespace

std::string WriteSensorExposures(const SensorExposures& request) {
    constexpr std::uint64_t seeds_of_a_sensor = 1000;
    const auto seed = static_cast<std::uint64_t>(request.seed);
    const SimulatedSensor sensor =
        request.strength == 0 ? SoundSensor(seed)
                              : RandomSensor(seed, static_cast<float>(request.strength), request.flat > 0);
    const std::array<Series, 4> all = {{{"dark", request.low, 160, 0},
                                        {"dark", request.high, 2500, 0},
                                        {"flat", request.flat, 160, 0.4F},
                                        {"later", request.later, 2500, 0}}};
    std::error_code ignored;
    std::filesystem::create_directories(request.folder, ignored);
    std::string failed = WriteTruth(request.folder + "/truth.txt", sensor);
    int number = 0;
    for (const Series& series : all) {
        const std::string folder = request.folder + "/" + series.folder;
        if (series.count > 0) {
            std::filesystem::create_directories(folder, ignored);
        }
        for (int i = 0; i < series.count && failed.empty(); ++i, ++number) {
            const SimulatedExposure exposure = {
                .iso = series.iso,
                .seed = (seeds_of_a_sensor * seed) + static_cast<std::uint64_t>(number),
                .light = series.light};
            failed =
                WritePair(folder + "/L1000" + std::to_string(200 + number), sensor, exposure, request.serial);
        }
    }
    return failed;
}

}  // namespace samples
