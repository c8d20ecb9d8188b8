// SPDX-License-Identifier: MIT
#include "fuzz/any_camera.h"

#include <cstdint>
#include <initializer_list>
#include <map>
#include <string>

#include "exif/maker_note.h"
#include "fuzz/require.h"
#include "sensor/sensor_frame.h"

namespace {

void Append(std::string& text, const char* key, std::initializer_list<int> values) {
    for (const int value : values) {
        text += std::string(key) + " = " + std::to_string(value) + "\n";
    }
}

}  // namespace

lensdb AnyLens() {
    constexpr std::uint8_t codes = 63;
    lensdb lenses;
    for (std::uint8_t code = 0; code < codes; ++code) {
        lenses.Lenses[maker_note::LensCodeText(code)] = {
            "Maker", "Model of an odd length", "1234567", 50, {91750, 131072, 367002, 1048576}};
    }
    lenses.Lenses[maker_note::LensCodeText(1)].Aperture.clear();
    lenses.Lenses[maker_note::LensCodeText(2)].SerialNo.clear();
    return lenses;
}

void ForgetUnknownCameras(sensdb& sensors) {
    std::erase_if(sensors.Cameras, [](const auto& entry) {
        return entry.second.Line.empty() && entry.second.LevelCorrection.empty();
    });
}

sensdb AnyCamera(const ScratchFolder& folder) {
    std::string text = "[3106091]\n";
    // Columns at both edges and between them; those from row 6 on also lie in the cropped frame.
    Append(text, "Line", {24, 6, 24, 5000, 124, 10, 124, 2646, 3943, 6, 3943, 65535});
    Append(text, "Line", {0, 0, 0, 9, 100, 1, 100, 3, 3966, 0, 3966, 9, 500, 0, 500, 65535});
    for (int column = 0; column < sensor_frame::kFullWidth; ++column) {
        text += "LevelCorrection = " + std::to_string(column % 7) + ".512000\n";
    }
    text += "[0]\n";
    Append(text, "Line", {30, 0, 30, 9, 40, 0, 41, 9});
    Append(text, "LevelCorrection", {1, 2, 3});
    folder.Write("sensdb.ini", text);
    sensdb sensors(folder.prefix());
    Require(sensors.LoadSensData() == 0, "the sensor database can be read");
    return sensors;
}
