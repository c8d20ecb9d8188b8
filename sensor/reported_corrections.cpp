// SPDX-License-Identifier: MIT
#include "sensor/reported_corrections.h"

#include <cstdio>

#include "errors/step_lines.h"

void ReportedCorrections::FixPixelLines(bool test) {
    const auto& list = sensors_.Camera(image_.serial).Line;
    if (list.empty()) {
        return;
    }
    if (list.size() % sensdb::Sensdbtype::kLineGroup != 0) {
        std::printf("No pixel error correction values available for camera No.%u.\n", image_.serial);
        return;
    }
    step_lines::Begin(verbose_, "Fixing pixel errors");
    tools_.fixPixelLine(image_.serial, image_.pixels, image_.width, image_.height, &sensors_, test);
    step_lines::End(verbose_);
}

bool ReportedCorrections::FixDarkField(bool estimate) {
    if (sensors_.Camera(image_.serial).LevelCorrection.empty()) {
        std::printf("No dark field correction values available for camera No.%u.\n", image_.serial);
        return false;
    }
    step_lines::Begin(verbose_, "Fixing sensor dark field");
    tools_.fixBlackLevels(image_.serial, image_.pixels, image_.iso, image_.width, image_.height,
                          image_.width * image_.height, &sensors_, estimate);
    step_lines::End(verbose_);
    return true;
}
