// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_POWERCUT_MUST_H
#define VELMARCON_TESTS_POWERCUT_MUST_H

#include <string_view>

namespace powercut {

/// Ends the process with a message when something that has nothing to do with the tested program failed.
void Must(bool worked, std::string_view what);

}  // namespace powercut

#endif  // VELMARCON_TESTS_POWERCUT_MUST_H
