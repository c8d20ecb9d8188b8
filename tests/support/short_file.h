// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_SUPPORT_SHORT_FILE_H
#define VELMARCON_TESTS_SUPPORT_SHORT_FILE_H

namespace support {

/// A plain file of which the kernel says that it has 4096 bytes, and which gives fewer. Not on every system.
constexpr const char* kFileShorterThanItsLength = "/sys/kernel/mm/transparent_hugepage/enabled";

}  // namespace support

#endif  // VELMARCON_TESTS_SUPPORT_SHORT_FILE_H
