// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_POWERCUT_VERDICT_H
#define VELMARCON_TESTS_POWERCUT_VERDICT_H

#include <cstdint>
#include <string>

#include "tests/powercut/disk_write.h"

namespace powercut {

/// What a file holds after a power cut.
enum class State : std::uint8_t {
    kOld,      ///< what it held before the run
    kNew,      ///< what the run wrote
    kAbsent,   ///< it is not there
    kEmpty,    ///< no bytes
    kShort,    ///< only the beginning of what the run wrote
    kDamaged,  ///< something else, or it can't be read
};

/// The state of the file at `path`; `old` may be null.
State StateOf(const std::string& path, const Bytes* old, const Bytes& made);

std::string Name(State state);

/// All bytes of the file. Returns false when it can't be read.
bool Read(const std::string& path, Bytes& bytes);

}  // namespace powercut

#endif  // VELMARCON_TESTS_POWERCUT_VERDICT_H
