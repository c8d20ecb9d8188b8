// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_SUPPORT_CAPTURE_STDOUT_H
#define VELMARCON_TESTS_SUPPORT_CAPTURE_STDOUT_H

#include <functional>
#include <string>

namespace support {

/// Everything that `action` prints to standard output.
std::string CaptureStdout(const std::function<void()>& action);

}  // namespace support

#endif  // VELMARCON_TESTS_SUPPORT_CAPTURE_STDOUT_H
