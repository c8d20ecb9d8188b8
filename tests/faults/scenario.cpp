// SPDX-License-Identifier: MIT
#include "tests/faults/scenario.h"

#include <unistd.h>

#include <ostream>
#include <string_view>

#include "samples/camera_jpeg.h"
#include "samples/sample_databases.h"
#include "samples/sensor_dump.h"
#include "system/part_files.h"
#include "tests/support/camera_dng.h"
#include "tests/support/test_pair.h"

namespace faults {

namespace {

constexpr int kLevels = 8;  ///< the level of column x is x modulo this

Bytes Text(std::string_view text) {
    return {text.begin(), text.end()};
}

File Jpeg() {
    return {"card/L1000001.JPG", samples::CameraJpeg(samples::CameraExif({}))};
}

File LensDatabase() {
    return {"bin/lensdb.ini", Text(samples::LensDatabase())};
}

/// A dump with varying rows and integer dark levels, so that its correction involves no random dither.
File DarkDump() {
    constexpr int rows = 16;
    auto words = samples::FlatWords(0);
    for (int y = 0; y < samples::kSensorHeight; ++y) {
        for (int x = 0; x < samples::kSensorWidth; ++x) {
            words[samples::WordIndex(x, y)] = static_cast<std::uint16_t>(y % rows + x % kLevels);
        }
    }
    return {"card/L1000001.RAW", samples::DumpBytes(words)};
}

/// The levels of DarkDump, and a defective column.
std::string SensorDatabase() {
    std::string text = "[3106091]\nLine = 1203\nLine = 700\nLine = 1203\nLine = 2646\n";
    for (int x = 0; x < samples::kSensorWidth; ++x) {
        text += "LevelCorrection = " + std::to_string(x % kLevels) + ".000000\n";
    }
    return text;
}

File CameraDng(const std::string& path) {
    return {path, samples::Serialize(support::SmallCameraDng(64, 48))};
}

}  // namespace

std::string PartOfEndedRun() {
    std::string name = part_files::NewName();
    const std::string mine = "-" + std::to_string(::getpid()) + "-";
    return name.replace(name.rfind(mine), mine.size(), "-999999999-");
}

void PrintTo(const ScenarioMaker& maker, std::ostream* stream) {
    *stream << maker.name;
}

Scenario Conversion() {
    return {
        .arguments = {"-i", ".", "-o", "../out", "-p", "-l"},
        .inputs = {Jpeg(), {"card/L1000001.RAW", samples::DumpBytes(support::TestWords())}, LensDatabase()},
        .targets = {"out/L1000001.DNG"}};
}

Scenario ConversionWithDarkFrame() {
    constexpr std::size_t shortest_raw_file = 10499328;
    auto raw = samples::DumpBytes(support::TestWords());
    raw.resize(shortest_raw_file);
    return {.arguments = {"-i", "L1000001.RAW", "-o", "../out", "-b"},
            .inputs = {Jpeg(), {"card/L1000001.RAW", raw}, {"card/L1000001.BIA", DarkDump().bytes}},
            .targets = {"out/L1000001.DNG"}};
}

Scenario ConversionOfConverted() {
    Scenario scenario = Conversion();
    scenario.old = {{"out/L1000001.DNG", Text("an older one")}};
    return scenario;
}

Scenario SensorFix() {
    return {.arguments = {"-i", "L1000001", "-o", "../out", "-s", "-r", "-v"},
            .inputs = {Jpeg(), DarkDump(), {"bin/sensdb.ini", Text(SensorDatabase())}},
            .targets = {"out/L1000001.DNG"},
            .old = {{"out/L1000001.DNG", Text("an older one")}},
            .dispensable = "bin/sensdb.ini",
            .message = "Error #0014: No Sensor database found.\n"};
}

Scenario DarkReference() {
    return {.arguments = {"-i", "L1000001.RAW", "-o", "../out", "-sd"},
            .inputs = {Jpeg(), DarkDump()},
            .targets = {"out/L1000001.DNG", "bin/sensdb.ini"},
            .old = {{"bin/sensdb.ini",
                     Text("[17]\nLine = 5\nLine = 0\nLine = 5\nLine = 9\nLevelCorrection = 1\n")}}};
}

Scenario Repair() {
    return {.arguments = {"-i", "L1000001.DNG", "-o", "../out", "-s", "-l", "-v"},
            .inputs = {CameraDng("card/L1000001.DNG"),
                       LensDatabase(),
                       {"bin/sensdb.ini", Text(SensorDatabase())}},
            .targets = {"out/L1000001.DNG"},
            .dispensable = "bin/sensdb.ini",
            .message = "Error #0014: No Sensor database found.\n"};
}

Scenario RepairAfterKill() {
    Scenario scenario = Repair();
    scenario.old = {{"out/L1000001.DNG", Text("an older one")}};
    scenario.arguments.emplace_back("-r");
    scenario.reading_is_swept = false;
    scenario.debris = {{"out/" + PartOfEndedRun(), Text("half of a")}, {"out/" + PartOfEndedRun(), Text("")}};
    return scenario;
}

Scenario RepairOverItself() {
    return {.arguments = {"-i", "L1000001.DNG", "-r"},
            .inputs = {},
            .targets = {"card/L1000001.DNG"},
            .old = {CameraDng("card/L1000001.DNG")}};
}

Scenario RepairOnFat() {
    Scenario scenario = RepairOverItself();
    scenario.on_fat = true;
    scenario.reading_is_swept = false;
    return scenario;
}

Scenario DarkReferenceOnFat() {
    Scenario scenario = DarkReference();
    scenario.on_fat = true;
    scenario.reading_is_swept = false;
    return scenario;
}

}  // namespace faults
