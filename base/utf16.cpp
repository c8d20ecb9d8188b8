// SPDX-License-Identifier: MIT
#include "base/utf16.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace utf16 {

namespace {

constexpr char32_t kFirstHigh = 0xD800;  // the half of a surrogate pair that holds the upper ten bits
constexpr char32_t kFirstLow = 0xDC00;   // the half that holds the lower ten
constexpr char32_t kLastLow = 0xDFFF;
constexpr char32_t kFirstPaired = 0x10000;  // the first number that needs a pair
constexpr char32_t kLast = 0x10FFFF;        // the last number of Unicode
constexpr char32_t kReplacement = 0xFFFD;   // for bytes that are not UTF-8
constexpr unsigned int kHalfBits = 10;
constexpr char32_t kHalfMask = 0x3FF;

constexpr unsigned int kTailBits = 6;  // in each byte of UTF-8 except the first
constexpr char32_t kTailMask = 0x3F;
constexpr char32_t kTail = 0x80;

/// What the first byte of a number in UTF-8 tells about the rest.
struct Lead {
    char32_t mask;      ///< the bits that encode the length
    char32_t mark;      ///< their value
    std::size_t tails;  ///< bytes that follow
    char32_t least;     ///< the smallest number that needs this length
};
constexpr std::array<Lead, 4> kLeads = {{
    {0x80, 0x00, 0, 0},
    {0xE0, 0xC0, 1, 0x80},
    {0xF0, 0xE0, 2, 0x800},
    {0xF8, 0xF0, 3, kFirstPaired},
}};

void AppendUtf8(std::string& text, char32_t number) {
    std::size_t length = kLeads.size() - 1;
    while (number < kLeads.at(length).least) {
        --length;
    }
    const Lead& lead = kLeads.at(length);
    for (std::size_t tail = lead.tails + 1; tail-- > 0;) {
        const char32_t bits = number >> (tail * kTailBits);
        text += static_cast<char>(tail == lead.tails ? lead.mark | bits : kTail | (bits & kTailMask));
    }
}

/// Reads the number at `position` and moves `position` past it. If no number begins there, skips one byte and
/// returns kReplacement.
char32_t TakeNumber(std::string_view text, std::size_t& position) {
    const auto byte = [&](std::size_t at) {
        return at < text.size() ? char32_t{static_cast<std::uint8_t>(text[at])} : char32_t{0};
    };
    const char32_t first = byte(position++);
    for (const Lead& lead : kLeads) {
        if ((first & lead.mask) != lead.mark) {
            continue;
        }
        char32_t number = first & ~lead.mask;
        for (std::size_t i = 0; i < lead.tails; ++i) {
            const char32_t tail = byte(position + i);
            if ((tail & ~kTailMask) != kTail) {
                return kReplacement;
            }
            number = (number << kTailBits) | (tail & kTailMask);
        }
        if (number < lead.least || number > kLast) {
            return kReplacement;
        }
        position += lead.tails;
        return number;
    }
    return kReplacement;
}

}  // namespace

std::string ToUtf8(std::u16string_view text) {
    std::string utf8;
    utf8.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t number = text[i];
        const char32_t next = i + 1 < text.size() ? char32_t{text[i + 1]} : 0;
        if (number >= kFirstHigh && number < kFirstLow && next >= kFirstLow && next <= kLastLow) {
            number = kFirstPaired + ((number - kFirstHigh) << kHalfBits) + (next - kFirstLow);
            ++i;
        }
        AppendUtf8(utf8, number);
    }
    return utf8;
}

std::u16string FromUtf8(std::string_view text) {
    std::u16string units;
    units.reserve(text.size());
    for (std::size_t position = 0; position < text.size();) {
        const char32_t number = TakeNumber(text, position);
        if (number < kFirstPaired) {
            units += static_cast<char16_t>(number);
        } else {
            const char32_t pair = number - kFirstPaired;
            units += static_cast<char16_t>(kFirstHigh + (pair >> kHalfBits));
            units += static_cast<char16_t>(kFirstLow + (pair & kHalfMask));
        }
    }
    return units;
}

}  // namespace utf16
