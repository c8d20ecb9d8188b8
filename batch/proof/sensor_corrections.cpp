// SPDX-License-Identifier: MIT
#include "batch/proof/sensor_corrections.h"

bool SensorCorrections::AreMade(const RunSettings& settings, sensdb& sensors) {
    return settings.sensor_fix && (sensors.LoadSensData() == 0 || settings.dark_field_creation);
}

/// A list with an incomplete group is left alone as a whole.
void SensorCorrections::FixLines(std::vector<std::uint16_t>& pixels) {
    const auto& list = sensors_.Camera(frame_.serial).Line;
    if (!list.empty() && list.size() % sensdb::Sensdbtype::kLineGroup == 0) {
        tools_.fixPixelLine(frame_.serial, &pixels, frame_.width, frame_.height, &sensors_,
                            settings_.pixel_line_test);
    }
}

bool SensorCorrections::HasLevels() const {
    return !sensors_.Camera(frame_.serial).LevelCorrection.empty();
}

ColumnLevels SensorCorrections::RemoveDarkField(std::vector<std::uint16_t>& pixels) {
    if (!settings_.row_offset_estimation) {
        return DitheredLevels(sensors_.Camera(frame_.serial).LevelCorrection, frame_.width, frame_.iso);
    }
    tools_.fixBlackLevels(frame_.serial, &pixels, frame_.iso, frame_.width, frame_.height,
                          frame_.width * frame_.height, &sensors_, true);
    return {};
}
