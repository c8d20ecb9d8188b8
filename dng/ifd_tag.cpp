// SPDX-License-Identifier: MIT
// The tag model: typed values become IFD entries, serialised as they will stand in the file.
#include <cassert>
#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "base/byte_order.h"
#include "dng/dnglib.h"
#include "tiff/types.h"

namespace {

/// Stores the entry; `value` holds its bytes as they stand in the file.
int Store(DNGlib::IFD* ifd, unsigned short tag, tiff::Type type, std::vector<std::uint8_t> value) {
    DNGlib::IFDTag& entry = (*ifd)[tag] = {};
    entry.tag = tag;
    entry.type = type;
    entry.length = static_cast<std::uint32_t>(value.size());
    const std::uint32_t element_size = tiff::ElementSize(type);
    assert(element_size != 0 && "callers pass the types 1 to 10 only");
    entry.count = entry.length / element_size;
    entry.value = std::move(value);
    return 0;
}

template <std::integral T>
int StoreArray(DNGlib::IFD* ifd, unsigned short tag, tiff::Type type, std::span<const T> elements) {
    std::vector<std::uint8_t> value;
    value.reserve(elements.size_bytes());
    for (const T element : elements) {
        byte_order::AppendLittle(value, element);
    }
    return Store(ifd, tag, type, std::move(value));
}

template <std::integral T>
int StoreRationals(DNGlib::IFD* ifd, unsigned short tag, tiff::Type type, std::span<const T> numerators,
                   std::span<const T> denominators) {
    std::vector<std::uint8_t> value;
    value.reserve(numerators.size_bytes() + denominators.size_bytes());
    for (std::size_t i = 0; i < numerators.size(); ++i) {
        byte_order::AppendLittle(value, numerators[i]);
        byte_order::AppendLittle(value, denominators[i]);
    }
    return Store(ifd, tag, type, std::move(value));
}

}  // namespace

int DNGlib::AddIFDTag(IFD* ifd, unsigned short tag, const unsigned char* data, unsigned short type,
                      unsigned int byteCount) {
    const std::span<const std::uint8_t> bytes(data, byteCount);
    return Store(ifd, tag, static_cast<tiff::Type>(type), {bytes.begin(), bytes.end()});
}

int DNGlib::AddIFDTag(IFD* ifd, unsigned short tag, const unsigned char* values, unsigned int n) {
    return StoreArray(ifd, tag, tiff::kByte, std::span(values, n));
}

int DNGlib::AddIFDTag(IFD* ifd, unsigned short tag, const char* values, unsigned int n) {
    return StoreArray(ifd, tag, tiff::kSByte, std::span(values, n));
}

int DNGlib::AddIFDTag(IFD* ifd, unsigned short tag, const unsigned short* values, unsigned int n) {
    return StoreArray(ifd, tag, tiff::kShort, std::span(values, n));
}

int DNGlib::AddIFDTag(IFD* ifd, unsigned short tag, const short* values, unsigned int n) {
    return StoreArray(ifd, tag, tiff::kSShort, std::span(values, n));
}

int DNGlib::AddIFDTag(IFD* ifd, unsigned short tag, const unsigned int* values, unsigned int n) {
    return StoreArray(ifd, tag, tiff::kLong, std::span(values, n));
}

int DNGlib::AddIFDTag(IFD* ifd, unsigned short tag, const int* values, unsigned int n) {
    return StoreArray(ifd, tag, tiff::kSLong, std::span(values, n));
}

int DNGlib::AddIFDTag(IFD* ifd, unsigned short tag, const unsigned int* numerators,
                      const unsigned int* denominators, unsigned int n) {
    return StoreRationals(ifd, tag, tiff::kRational, std::span(numerators, n), std::span(denominators, n));
}

int DNGlib::AddIFDTag(IFD* ifd, unsigned short tag, const int* numerators, const int* denominators,
                      unsigned int n) {
    return StoreRationals(ifd, tag, tiff::kSRational, std::span(numerators, n), std::span(denominators, n));
}

int DNGlib::AddIFDTag(IFD* ifd, unsigned short tag, unsigned int value) {
    return AddIFDTag(ifd, tag, &value, 1U);
}

int DNGlib::AddIFDTag(IFD* ifd, unsigned short tag, int value) {
    return AddIFDTag(ifd, tag, &value, 1U);
}

int DNGlib::AddIFDTag(IFD* ifd, unsigned short tag, unsigned short value) {
    return AddIFDTag(ifd, tag, &value, 1U);
}

int DNGlib::AddIFDTag(IFD* ifd, unsigned short tag, short value) {
    return AddIFDTag(ifd, tag, &value, 1U);
}

int DNGlib::AddIFDTag(IFD* ifd, unsigned short tag, unsigned char value) {
    return AddIFDTag(ifd, tag, &value, 1U);
}

int DNGlib::AddIFDTag(IFD* ifd, unsigned short tag, char value) {
    return AddIFDTag(ifd, tag, &value, 1U);
}

int DNGlib::AddIFDTag(IFD* ifd, unsigned short tag, unsigned int numerator, unsigned int denominator) {
    return AddIFDTag(ifd, tag, &numerator, &denominator, 1U);
}

int DNGlib::AddIFDTag(IFD* ifd, unsigned short tag, int numerator, int denominator) {
    return AddIFDTag(ifd, tag, &numerator, &denominator, 1U);
}

int DNGlib::AddIFDTag(IFD* ifd, unsigned short tag, unsigned char value, unsigned short type) {
    return AddIFDTag(ifd, tag, &value, type, 1U);
}

int DNGlib::AddIFDTag(IFD* ifd, unsigned short tag, const std::string& text) {
    std::vector<std::uint8_t> value(text.begin(), text.end());
    if (value.empty() || value.back() != 0) {
        value.push_back(0);
    }
    Store(ifd, tag, tiff::kAscii, std::move(value));

    IFDTag& entry = (*ifd)[tag];
    if (entry.length > tiff::kValueFieldSize && entry.length % 2 != 0) {
        entry.value.push_back(0);
        ++entry.length;
    }
    return 0;
}

DNGlib::IFDTag* DNGlib::GetElement(unsigned short tag, IFD* ifd) {
    return &ifd->at(tag);
}

int DNGlib::UpdateIFDTagPos(IFD* ifd, unsigned short tag, unsigned int position) {
    (*ifd)[tag].position = position;
    return 0;
}
