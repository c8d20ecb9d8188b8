// SPDX-License-Identifier: MIT
#include "samples/tiff_entry.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <utility>

#include "base/byte_order.h"
#include "tiff/types.h"

namespace samples {

namespace {

std::vector<std::uint8_t> TextBytes(std::string_view text) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(text.size() + 1);
    for (const char c : text) {
        bytes.push_back(static_cast<std::uint8_t>(c));
    }
    return bytes;
}

Entry OfBytes(std::uint16_t tag, std::uint16_t type, std::vector<std::uint8_t> value) {
    const auto count = static_cast<std::uint32_t>(value.size());
    return {.tag = tag, .type = type, .count = count, .value = std::move(value)};
}

template <typename Number>
Entry OfNumbers(std::uint16_t tag, std::uint16_t type, const std::vector<Number>& numbers) {
    Entry entry = {.tag = tag, .type = type, .count = static_cast<std::uint32_t>(numbers.size())};
    entry.unit = sizeof(Number);
    for (const Number number : numbers) {
        byte_order::AppendLittle(entry.value, number);
    }
    return entry;
}

template <typename Pair>
Entry OfPairs(std::uint16_t tag, std::uint16_t type, const std::vector<Pair>& pairs) {
    Entry entry = {.tag = tag, .type = type, .count = static_cast<std::uint32_t>(pairs.size())};
    entry.unit = 4;
    for (const Pair& pair : pairs) {
        byte_order::AppendLittle(entry.value, pair.numerator);
        byte_order::AppendLittle(entry.value, pair.denominator);
    }
    return entry;
}

std::vector<std::uint8_t> InOrder(const Entry& entry, ByteOrder order) {
    std::vector<std::uint8_t> bytes = entry.value;
    if (order == ByteOrder::kBigEndian && entry.unit > 1) {
        for (std::size_t i = 0; i + entry.unit <= bytes.size(); i += entry.unit) {
            const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(i);
            std::reverse(first, first + static_cast<std::ptrdiff_t>(entry.unit));
        }
    }
    return bytes;
}

/// Appends the 4 bytes of the value field; a value that does not fit goes to `values`.
void AppendValueField(const Entry& entry, ByteOrder order, std::uint32_t values_offset,
                      std::vector<std::uint8_t>& table, std::vector<std::uint8_t>& values) {
    if (entry.raw_field) {
        AppendNumber(table, order, *entry.raw_field, tiff::kValueFieldSize);
        return;
    }
    std::vector<std::uint8_t> bytes = InOrder(entry, order);
    if (bytes.size() <= tiff::kValueFieldSize) {
        bytes.resize(tiff::kValueFieldSize);
        table.insert(table.end(), bytes.begin(), bytes.end());
        return;
    }
    const auto position = values_offset + static_cast<std::uint32_t>(values.size());
    AppendNumber(table, order, position, tiff::kValueFieldSize);
    values.insert(values.end(), bytes.begin(), bytes.end());
    if (values.size() % 2 != 0) {
        values.push_back(0);
    }
}

}  // namespace

Rational AsUnsigned(SRational value) {
    return {std::bit_cast<std::uint32_t>(value.numerator), std::bit_cast<std::uint32_t>(value.denominator)};
}

Entry Ascii(std::uint16_t tag, std::string_view text) {
    std::vector<std::uint8_t> bytes = TextBytes(text);
    if (bytes.empty() || bytes.back() != 0) {
        bytes.push_back(0);
    }
    return OfBytes(tag, tiff::kAscii, std::move(bytes));
}

Entry AsciiUnterminated(std::uint16_t tag, std::string_view text) {
    return OfBytes(tag, tiff::kAscii, TextBytes(text));
}

Entry Bytes(std::uint16_t tag, std::vector<std::uint8_t> values) {
    return OfBytes(tag, tiff::kByte, std::move(values));
}

Entry Undefined(std::uint16_t tag, std::vector<std::uint8_t> values) {
    return OfBytes(tag, tiff::kUndefined, std::move(values));
}

Entry Shorts(std::uint16_t tag, const std::vector<std::uint16_t>& values) {
    return OfNumbers(tag, tiff::kShort, values);
}

Entry Longs(std::uint16_t tag, const std::vector<std::uint32_t>& values) {
    return OfNumbers(tag, tiff::kLong, values);
}

Entry SLongs(std::uint16_t tag, const std::vector<std::int32_t>& values) {
    return OfNumbers(tag, tiff::kSLong, values);
}

Entry Rationals(std::uint16_t tag, const std::vector<Rational>& values) {
    return OfPairs(tag, tiff::kRational, values);
}

Entry SRationals(std::uint16_t tag, const std::vector<SRational>& values) {
    return OfPairs(tag, tiff::kSRational, values);
}

Entry RawEntry(std::uint16_t tag, std::uint16_t type, std::uint32_t count, std::uint32_t field) {
    return {.tag = tag, .type = type, .count = count, .raw_field = field};
}

Entry Short(std::uint16_t tag, std::uint16_t value) {
    return Shorts(tag, {value});
}

Entry Long(std::uint16_t tag, std::uint32_t value) {
    return Longs(tag, {value});
}

const Entry* Find(const std::vector<Entry>& entries, std::uint16_t tag) {
    const auto found = std::ranges::find(entries, tag, &Entry::tag);
    return found == entries.end() ? nullptr : &*found;
}

Entry* Find(std::vector<Entry>& entries, std::uint16_t tag) {
    const auto found = std::ranges::find(entries, tag, &Entry::tag);
    return found == entries.end() ? nullptr : &*found;
}

void Set(std::vector<Entry>& entries, Entry entry) {
    if (Entry* const present = Find(entries, entry.tag); present != nullptr) {
        *present = std::move(entry);
        return;
    }
    const auto higher =
        std::ranges::find_if(entries, [&](const Entry& other) { return other.tag > entry.tag; });
    entries.insert(higher, std::move(entry));
}

bool Remove(std::vector<Entry>& entries, std::uint16_t tag) {
    return std::erase_if(entries, [tag](const Entry& entry) { return entry.tag == tag; }) > 0;
}

std::uint32_t TableSize(const std::vector<Entry>& entries) {
    const auto count = static_cast<std::uint32_t>(entries.size());
    return tiff::kCountSize + (tiff::kEntrySize * count) + tiff::kLinkSize;
}

void AppendIfd(const std::vector<Entry>& entries, ByteOrder order, std::uint32_t values_offset,
               std::uint32_t next_ifd, std::vector<std::uint8_t>& table, std::vector<std::uint8_t>& values) {
    AppendNumber(table, order, static_cast<std::uint32_t>(entries.size()), 2);
    for (const Entry& entry : entries) {
        AppendNumber(table, order, entry.tag, 2);
        AppendNumber(table, order, entry.type, 2);
        AppendNumber(table, order, entry.count, 4);
        AppendValueField(entry, order, values_offset, table, values);
    }
    AppendNumber(table, order, next_ifd, 4);
}

void AppendNumber(std::vector<std::uint8_t>& out, ByteOrder order, std::uint32_t value, std::uint32_t bytes) {
    for (std::uint32_t i = 0; i < bytes; ++i) {
        const std::uint32_t place = order == ByteOrder::kLittleEndian ? i : bytes - 1 - i;
        out.push_back(static_cast<std::uint8_t>(value >> (8U * place) & 0xFFU));
    }
}

}  // namespace samples
