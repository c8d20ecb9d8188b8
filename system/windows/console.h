// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_WINDOWS_CONSOLE_H
#define VELMARCON_SYSTEM_WINDOWS_CONSOLE_H

#include <string>
#include <vector>

/// Lets the console show the program's texts, which are UTF-8, until the program ends. It would stay so.
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

/// A card reader without a card is an error like any other from now on, and no reason to ask in a window.
void ShowNoErrorWindows();

/// The arguments of wmain as the program's texts, its name included.
std::vector<std::string> Arguments(int count, const wchar_t* const* arguments);

#endif  // VELMARCON_SYSTEM_WINDOWS_CONSOLE_H
