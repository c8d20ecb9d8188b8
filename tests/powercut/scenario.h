// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_POWERCUT_SCENARIO_H
#define VELMARCON_TESTS_POWERCUT_SCENARIO_H

#include <string>
#include <vector>

#include "tests/powercut/disk_write.h"

namespace powercut {

/// A file and its path on the disk.
struct File {
    std::string path;
    Bytes bytes;
};

/// What the program does on the disk when the power fails.
struct Scenario {
    std::string name;
    std::vector<File> inputs;       ///< only read by the program
    std::vector<File> replaced;     ///< with their content before the runs
    std::vector<std::string> made;  ///< do not exist before the runs
    /// Arguments of the program, whose current folder is that of the disk.
    std::vector<std::vector<std::string>> runs;
    std::vector<std::vector<std::string>> again = {};  ///< runs after the power cut, which repair its effects
    bool is_quick = false;                             ///< fast enough to examine any number of times
};

/// Repairs camera DNGs in their own folder.
Scenario RepairInPlace();

/// Converts a RAW and a JPEG file to a DNG.
Scenario NewDng();

/// Writes a new sensor database.
Scenario DarkReference();

}  // namespace powercut

#endif  // VELMARCON_TESTS_POWERCUT_SCENARIO_H
