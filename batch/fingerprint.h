// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_FINGERPRINT_H
#define VELMARCON_BATCH_FINGERPRINT_H

#include <cstdint>
#include <span>
#include <string>

/// 16 hexadecimal digits that tell the bytes from any that they become by damage: as quick as memory, and no
/// proof against forgery.
std::string Fingerprint(std::span<const std::uint8_t> bytes);

#endif  // VELMARCON_BATCH_FINGERPRINT_H
