// SPDX-License-Identifier: MIT
#include "tests/end_to_end/sensor_camera.h"

#include <cstddef>
#include <cstdlib>

#include <gtest/gtest.h>

#include "samples/camera_jpeg.h"
#include "samples/sensor_dump.h"

namespace end_to_end {

std::string SensorCamera::DatabaseText() const {
    const auto bytes = support::ReadFile(Database());
    return {bytes.begin(), bytes.end()};
}

void SensorCamera::AddExposure(const std::string& base, std::span<const std::uint16_t> words,
                               const samples::Shot& shot) const {
    support::WriteFile(card / (base + ".JPG"), samples::CameraJpeg(samples::CameraExif(shot)));
    support::WriteFile(card / (base + ".RAW"), samples::DumpBytes(words));
}

support::Outcome SensorCamera::Run(const std::vector<std::string>& arguments) const {
    return support::RunProgram(VELMARCON_PROGRAM, arguments,
                               {.folder = card.folder(), .name = program_ / "velmarcon"});
}

std::string Section(const std::string& serial) {
    return "[" + serial + "]\n";
}

std::string Lines(const std::vector<int>& values) {
    std::string text;
    for (const int value : values) {
        text += "Line = " + std::to_string(value) + "\n";
    }
    return text;
}

std::string Levels(int period) {
    std::string text;
    for (int x = 0; x < samples::kSensorWidth; ++x) {
        text += "LevelCorrection = " + std::to_string(x % period) + ".000000\n";
    }
    return text;
}

void ExpectPixels(const std::vector<std::uint16_t>& actual, const std::vector<std::uint16_t>& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    constexpr int rounded_up = 20;
    int different = 0;
    for (std::size_t i = 0; i < actual.size(); ++i) {
        if (actual[i] != expected[i]) {
            ++different;
            ASSERT_LE(std::abs(actual[i] - expected[i]), 1) << "pixel " << i;
        }
    }
    EXPECT_LE(different, rounded_up);
}

}  // namespace end_to_end
