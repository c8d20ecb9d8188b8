// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_SHOWN_H
#define VELMARCON_BATCH_SHOWN_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <system_error>

/// `text` as it is or, with control characters in it, which could end the line or steer the terminal, as bash
/// would have it quoted.
std::string Shown(const std::string& text);

/// What an error of the system or of std::filesystem means, in words.
std::string ErrorText(std::error_code error);

/// "1 picture", "2 pictures".
std::string NumberOfPictures(std::size_t number);

/// "640 MB", "13.4 GB": of a million and a thousand million bytes.
std::string Bytes(std::uint64_t bytes);

/// "40 s", "12 min", "3 h 20 min".
std::string Duration(double seconds);

#endif  // VELMARCON_BATCH_SHOWN_H
