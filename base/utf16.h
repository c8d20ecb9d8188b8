// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BASE_UTF16_H
#define VELMARCON_BASE_UTF16_H

#include <string>
#include <string_view>

/// Between the two ways to write Unicode: names on Windows are UTF-16, the program's texts are UTF-8. A name
/// there may hold half a surrogate pair, which stands for no character. It becomes the three bytes that its
/// number would have in UTF-8, and comes back from them: such a file is found like any other.
namespace utf16 {

/// `text`, any sequence of 16-bit units, as UTF-8.
std::string ToUtf8(std::u16string_view text);

/// `text` as UTF-16. Bytes that are no UTF-8 become U+FFFD.
std::u16string FromUtf8(std::string_view text);

}  // namespace utf16

#endif  // VELMARCON_BASE_UTF16_H
