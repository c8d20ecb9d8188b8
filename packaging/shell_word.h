// SPDX-License-Identifier: MIT
#ifndef VELMARCON_PACKAGING_SHELL_WORD_H
#define VELMARCON_PACKAGING_SHELL_WORD_H

#include <string>
#include <string_view>

/// `text` as one types it in a shell: in quotes where it needs them. A control character, which could end the
/// line or steer the terminal, is shown as "?".
std::string ShellWord(std::string_view text);

#endif  // VELMARCON_PACKAGING_SHELL_WORD_H
