// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_SAME_BYTES_H
#define VELMARCON_SYSTEM_SAME_BYTES_H

#include <string>

/// Whether both plain files can be read to their ends and hold the same bytes.
bool HaveSameBytes(const std::string& a, const std::string& b);

#endif  // VELMARCON_SYSTEM_SAME_BYTES_H
