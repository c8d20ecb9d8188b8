// SPDX-License-Identifier: MIT
#include "tests/powercut/scenario.h"

#include <string_view>

#include "samples/camera_dng.h"
#include "samples/camera_jpeg.h"
#include "samples/sensor_dump.h"
#include "tests/support/camera_dng.h"
#include "tests/support/test_pair.h"

namespace powercut {

namespace {

/// Bytes up to the last required row.
constexpr std::size_t kShortestDump = 10499328;

Bytes Text(std::string_view text) {
    return {text.begin(), text.end()};
}

std::string Number(int picture) {
    return "L100000" + std::to_string(picture);
}

void AddPair(Scenario& scenario, int picture) {
    Bytes dump = samples::DumpBytes(support::TestWords());
    dump.resize(kShortestDump);
    scenario.inputs.push_back({"card/" + Number(picture) + ".RAW", std::move(dump)});
    scenario.inputs.push_back(
        {"card/" + Number(picture) + ".JPG", samples::CameraJpeg(samples::CameraExif({}))});
    scenario.made.push_back("out/" + Number(picture) + ".DNG");
}

/// A small picture, so that pixel data do not outweigh the writes that maintain the file system. Each number
/// gives a different picture.
Bytes CameraDng(int picture) {
    constexpr int width = 640;
    constexpr int height = 480;
    auto dng = support::SmallCameraDng(width, height);
    for (auto& byte : dng.raw) {
        byte = static_cast<std::uint8_t>(byte + picture);
    }
    return samples::Serialize(dng);
}

}  // namespace

Scenario RepairInPlace() {
    constexpr int pictures = 8;
    Scenario scenario = {.name = "repair in place", .is_quick = true};
    for (int picture = 1; picture <= pictures; ++picture) {
        const std::string dng = "card/" + Number(picture) + ".DNG";
        scenario.replaced.push_back({dng, CameraDng(picture)});
        scenario.runs.push_back({"-i", dng, "-r"});
    }
    scenario.again = scenario.runs;
    return scenario;
}

Scenario NewDng() {
    Scenario scenario = {.name = "new DNG", .runs = {{"-i", "card", "-o", "out"}}};
    AddPair(scenario, 1);
    return scenario;
}

Scenario DarkReference() {
    Scenario scenario = {.name = "sensdb.ini", .runs = {{"-i", "card/L1000001.RAW", "-o", "out", "-sd"}}};
    scenario.again = scenario.runs;
    scenario.again.front().emplace_back("-r");
    AddPair(scenario, 1);
    scenario.replaced = {
        {"bin/sensdb.ini", Text("[17]\nLine = 5\nLine = 0\nLine = 5\nLine = 9\nLevelCorrection = 1\n")}};
    return scenario;
}

}  // namespace powercut
