// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BASE_CONTROL_CHARACTER_H
#define VELMARCON_BASE_CONTROL_CHARACTER_H

/// Whether a terminal would obey the ASCII character instead of showing it.
constexpr bool IsControl(char c) {
    constexpr unsigned char first_printable = 0x20;
    constexpr unsigned char deletion = 0x7F;
    const auto byte = static_cast<unsigned char>(c);
    return byte < first_printable || byte == deletion;
}

#endif  // VELMARCON_BASE_CONTROL_CHARACTER_H
