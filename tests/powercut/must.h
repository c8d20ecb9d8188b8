// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_POWERCUT_MUST_H
#define VELMARCON_TESTS_POWERCUT_MUST_H

#include <string_view>

namespace powercut {

/// Ends the process with a message if a step failed that is not part of the tested program.
void Must(bool worked, std::string_view what);

}  // namespace powercut

#endif  // VELMARCON_TESTS_POWERCUT_MUST_H
