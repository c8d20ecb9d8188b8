// SPDX-License-Identifier: MIT
#include "dng/ifd.h"

#include <cassert>

#include "tiff/entry.h"

namespace ifd {

void AddBytes(IFD& ifd, std::uint16_t tag, std::uint16_t type, std::span<const std::uint8_t> bytes) {
    const std::uint32_t element_size = tiff::ElementSize(type);
    assert(element_size != 0 && "callers pass the types 1 to 10 only");
    IFDTag& entry = ifd[tag] = {};
    entry.tag = tag;
    entry.type = type;
    entry.length = static_cast<std::uint32_t>(bytes.size());
    entry.count = entry.length / element_size;
    entry.value.assign(bytes.begin(), bytes.end());
}

void Add(IFD& ifd, std::uint16_t tag, std::string_view text) {
    std::vector<std::uint8_t> value(text.begin(), text.end());
    if (value.empty() || value.back() != 0) {
        value.push_back(0);
    }
    AddBytes(ifd, tag, tiff::kAscii, value);

    IFDTag& entry = ifd[tag];
    if (!tiff::FitsInEntry(entry.length) && entry.length % 2 != 0) {
        entry.value.push_back(0);
        ++entry.length;
    }
}

std::span<const std::uint8_t> Bytes(const IFD& ifd, std::uint16_t tag) {
    const auto entry = ifd.find(tag);
    return entry == ifd.end() ? std::span<const std::uint8_t>() : entry->second.value;
}

std::string Text(const IFD& ifd, std::uint16_t tag) {
    const auto bytes = Bytes(ifd, tag);
    return {bytes.begin(), bytes.end()};
}

std::span<const std::uint8_t> BytesOfType(const IFD& ifd, std::uint16_t tag, tiff::Type type) {
    const auto entry = ifd.find(tag);
    return entry == ifd.end() || entry->second.type != type ? std::span<const std::uint8_t>()
                                                            : entry->second.value;
}

std::optional<std::uint32_t> FirstNumber(const IFD& ifd, std::uint16_t tag) {
    if (const auto number = First<std::uint16_t>(ifd, tag)) {
        return *number;
    }
    return First<std::uint32_t>(ifd, tag);
}

std::optional<SRational> FirstRational(const IFD& ifd, std::uint16_t tag) {
    if (const auto value = First<Rational>(ifd, tag)) {
        return AsSigned(*value);
    }
    return First<SRational>(ifd, tag);
}

}  // namespace ifd
