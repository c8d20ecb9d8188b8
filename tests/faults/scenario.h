// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_FAULTS_SCENARIO_H
#define VELMARCON_TESTS_FAULTS_SCENARIO_H

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace faults {

using Bytes = std::vector<std::uint8_t>;

/// A file in one of the folders of a run: "card/", "out/", or "bin/", the folder of the program.
struct File {
    std::string path;
    Bytes bytes;
};

/// A run of the program: its arguments and the files that it finds. The card is its current folder.
struct Scenario {
    std::vector<std::string> arguments;
    std::vector<File> inputs;          ///< only read by the run
    std::vector<std::string> targets;  ///< the files that the run writes
    std::vector<File> old = {};        ///< targets that exist before the run
    std::vector<File> debris = {};     ///< left behind by killed runs
    /// An input without which the run produces a lesser result, and the message that reports its absence.
    std::string dispensable = {};
    std::string message = {};
    bool on_fat = false;  ///< whether the output is on FAT, where the old file is copied before the new one
                          ///< takes its name
    bool reading_is_swept = true;  ///< false: another scenario reads in the same way
};

/// The name of a part file from this computer and from a process whose number cannot exist.
std::string PartOfEndedRun();

/// Converts a pair to a DNG with preview and lens data.
Scenario Conversion();
/// Converts a pair that has a dark frame to a DNG, which without the dark frame would not be written.
Scenario ConversionWithDarkFrame();
/// Converts a pair to a DNG with columns and dark levels corrected, replacing an older DNG.
Scenario SensorFix();
/// Replaces the dark levels in a database that also holds another camera's levels.
Scenario DarkReference();
/// Repairs a camera DNG into another folder.
Scenario Repair();
/// Finds a pair whose DNG exists already and must not be replaced.
Scenario ConversionOfConverted();
/// Repairs a camera DNG into a folder with the part files of killed runs.
Scenario RepairAfterKill();
/// Replaces a camera DNG by its repaired version.
Scenario RepairOverItself();

/// Replaces a camera DNG by its repaired version on a FAT file system.
Scenario RepairOnFat();
/// Replaces dark levels on a FAT file system.
Scenario DarkReferenceOnFat();

/// Creates a scenario on demand, because its files are large.
struct ScenarioMaker {
    const char* name;
    Scenario (*make)();
};

void PrintTo(const ScenarioMaker& maker, std::ostream* stream);

constexpr ScenarioMaker kConversion = {"Conversion", Conversion};
constexpr ScenarioMaker kConversionWithDarkFrame = {"ConversionWithDarkFrame", ConversionWithDarkFrame};
constexpr ScenarioMaker kConversionOfConverted = {"ConversionOfConverted", ConversionOfConverted};
constexpr ScenarioMaker kSensorFix = {"SensorFix", SensorFix};
constexpr ScenarioMaker kDarkReference = {"DarkReference", DarkReference};
constexpr ScenarioMaker kRepair = {"Repair", Repair};
constexpr ScenarioMaker kRepairAfterKill = {"RepairAfterKill", RepairAfterKill};
constexpr ScenarioMaker kRepairOverItself = {"RepairOverItself", RepairOverItself};
constexpr ScenarioMaker kRepairOnFat = {"RepairOnFat", RepairOnFat};
constexpr ScenarioMaker kDarkReferenceOnFat = {"DarkReferenceOnFat", DarkReferenceOnFat};

}  // namespace faults

#endif  // VELMARCON_TESTS_FAULTS_SCENARIO_H
