// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_WINDOWS_CONSOLE_H
#define VELMARCON_SYSTEM_WINDOWS_CONSOLE_H

#include <string>
#include <vector>

/// Makes the console show UTF-8, the encoding of the program's texts, and restores its old code page at the
/// end.
class Utf8Console {
  public:
    Utf8Console();
    ~Utf8Console();
    Utf8Console(const Utf8Console&) = delete;
    Utf8Console& operator=(const Utf8Console&) = delete;
    Utf8Console(Utf8Console&&) = delete;
    Utf8Console& operator=(Utf8Console&&) = delete;

  private:
    unsigned int code_page_;
};

/// From now on, a card reader without a card is an ordinary error and opens no dialog window.
void ShowNoErrorWindows();

/// The arguments of wmain, including the program's name, in UTF-8.
std::vector<std::string> Arguments(int count, const wchar_t* const* arguments);

#endif  // VELMARCON_SYSTEM_WINDOWS_CONSOLE_H
