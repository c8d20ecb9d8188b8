// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_FAULTS_SCENARIO_H
#define VELMARCON_TESTS_FAULTS_SCENARIO_H

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace faults {

using Bytes = std::vector<std::uint8_t>;

/// A file in one of the folders of a run: "card/", "out/" or "bin/", which is the program's.
struct File {
    std::string path;
    Bytes bytes;
};

/// A run of the program: what it is asked for, and what it finds. The card is its current folder.
struct Scenario {
    std::vector<std::string> arguments;
    std::vector<File> inputs;          ///< what it reads only
    std::vector<std::string> targets;  ///< what it makes
    std::vector<File> old = {};        ///< what stands in the place of targets before
    std::vector<File> debris = {};     ///< what killed runs have left
    /// An input without which it makes something less, and the message that tells so.
    std::string dispensable = {};
    std::string message = {};
    bool on_fat = false;           ///< where a copy of the old file is made before the new one takes its name
    bool reading_is_swept = true;  ///< false: another scenario reads in the same way
};

/// Name of a part of this computer, and of a process with a number that no process can have.
std::string PartOfEndedRun();

/// A pair of a folder becomes a DNG with preview and lens data.
Scenario Conversion();
/// A pair becomes a DNG, with columns and dark levels corrected, in the place of an older one.
Scenario SensorFix();
/// Dark levels from a pair replace those of a database, which has those of another camera.
Scenario DarkReference();
/// A DNG of the camera is repaired into another folder.
Scenario Repair();
/// A pair that has a DNG already, which is not to be replaced.
Scenario ConversionOfConverted();
/// The same where a killed run has left its part.
Scenario RepairAfterKill();
/// A DNG of the camera is replaced by its repair.
Scenario RepairOverItself();

/// The same on a FAT file system.
Scenario RepairOnFat();
/// Dark levels replace others on a FAT file system.
Scenario DarkReferenceOnFat();

/// A scenario that is not made yet: its files are large.
struct ScenarioMaker {
    const char* name;
    Scenario (*make)();
};

void PrintTo(const ScenarioMaker& maker, std::ostream* stream);

constexpr ScenarioMaker kConversion = {"Conversion", Conversion};
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
