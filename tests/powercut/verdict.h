// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_POWERCUT_VERDICT_H
#define VELMARCON_TESTS_POWERCUT_VERDICT_H

#include <cstdint>
#include <string>

#include "tests/powercut/disk_write.h"

namespace powercut {

/// The state of a file after a power cut.
enum class State : std::uint8_t {
    kOld,      ///< the content from before the run
    kNew,      ///< the content that the run wrote
    kAbsent,   ///< the file does not exist
    kEmpty,    ///< the file is empty
    kShort,    ///< only the start of what the run wrote
    kDamaged,  ///< anything else, or unreadable
};

/// The state of the file at `path`; `old` may be null.
State StateOf(const std::string& path, const Bytes* old, const Bytes& made);

std::string Name(State state);

/// Reads all bytes of the file. Returns false if it can't be read.
bool Read(const std::string& path, Bytes& bytes);

}  // namespace powercut

#endif  // VELMARCON_TESTS_POWERCUT_VERDICT_H
