// SPDX-License-Identifier: MIT
#ifndef VELMARCON_PACKAGING_SHELL_WORD_H
#define VELMARCON_PACKAGING_SHELL_WORD_H

#include <cstddef>
#include <string>
#include <string_view>

/// `text` as typed in a shell, in quotes if necessary. Control characters, which could end the line or
/// control the terminal, are shown as "?".
std::string ShellWord(std::string_view text);

/// `number` words, of which `first` is shown: as ShellWord, with " and 2 more" if there are three.
std::string ShellWords(std::string_view first, std::size_t number);

#endif  // VELMARCON_PACKAGING_SHELL_WORD_H
