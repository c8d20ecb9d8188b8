// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BASE_UTF16_H
#define VELMARCON_BASE_UTF16_H

#include <string>
#include <string_view>

/// Converts between the UTF-16 of names on Windows and the UTF-8 of the program's texts. A name on Windows
/// may contain half a surrogate pair, which encodes no character. It becomes the three bytes that its number
/// would have in UTF-8, and is restored from them, so that such a file is found like any other.
namespace utf16 {

/// `text`, any sequence of 16-bit units, as UTF-8.
std::string ToUtf8(std::u16string_view text);

/// `text` as UTF-16. Bytes that are not UTF-8 become U+FFFD.
std::u16string FromUtf8(std::string_view text);

}  // namespace utf16

#endif  // VELMARCON_BASE_UTF16_H
