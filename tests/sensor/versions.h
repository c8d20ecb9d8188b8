// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_SENSOR_VERSIONS_H
#define VELMARCON_TESTS_SENSOR_VERSIONS_H

#include <vector>

#include "sensor/instruction_set.h"

/// The versions of a loop that this machine can run.
inline std::vector<InstructionSet> AvailableVersions() {
    std::vector<InstructionSet> versions;
    for (const InstructionSet version : instruction_set::kAll) {
        if (instruction_set::IsAvailable(version)) {
            versions.push_back(version);
        }
    }
    return versions;
}

#endif  // VELMARCON_TESTS_SENSOR_VERSIONS_H
