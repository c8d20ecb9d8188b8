// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_POWERCUT_SCENARIO_H
#define VELMARCON_TESTS_POWERCUT_SCENARIO_H

#include <string>
#include <vector>

#include "tests/powercut/disk_write.h"

namespace powercut {

/// A file by its path on the disk.
struct File {
    std::string path;
    Bytes bytes;
};

/// What the program does on the disk while the power goes.
struct Scenario {
    std::string name;
    std::vector<File> inputs;       ///< are only read
    std::vector<File> replaced;     ///< with what they hold before the runs
    std::vector<std::string> made;  ///< are not there before the runs
    std::vector<std::vector<std::string>>
        runs;  ///< arguments of the program, whose current folder is the disk's
    std::vector<std::vector<std::string>> again =
        {};                 ///< runs after the power cut, which put right what it left
    bool is_quick = false;  ///< takes so little time that it can be looked at as often as one likes
};

/// Cameras' DNGs are repaired in their own folder.
Scenario RepairInPlace();

/// A RAW and a JPEG file become a DNG.
Scenario NewDng();

/// The sensor database is written anew.
Scenario DarkReference();

}  // namespace powercut

#endif  // VELMARCON_TESTS_POWERCUT_SCENARIO_H
