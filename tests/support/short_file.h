// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_SUPPORT_SHORT_FILE_H
#define VELMARCON_TESTS_SUPPORT_SHORT_FILE_H

namespace support {

/// A plain file for which the kernel reports 4096 bytes, but which holds fewer. Not all systems have it.
constexpr const char* kFileShorterThanItsLength = "/sys/kernel/mm/transparent_hugepage/enabled";

}  // namespace support

#endif  // VELMARCON_TESTS_SUPPORT_SHORT_FILE_H
