// SPDX-License-Identifier: MIT
#include "dng/ifd_values.h"

#include <bit>

#include "tiff/types.h"

namespace ifd_values {

namespace {

/// The entry of `tag`, if there is one of `type` with a value.
const DNGlib::IFDTag* Find(const DNGlib::IFD& ifd, std::uint16_t tag, std::uint16_t type) {
    const auto entry = ifd.find(tag);
    return entry == ifd.end() || entry->second.type != type || entry->second.count == 0 ? nullptr
                                                                                        : &entry->second;
}

}  // namespace

std::vector<std::uint16_t> Shorts(const DNGlib::IFD& ifd, std::uint16_t tag) {
    const auto* entry = Find(ifd, tag, tiff::kShort);
    return entry == nullptr ? std::vector<std::uint16_t>()
                            : DNGlib::ParseShort(entry->value.data(), entry->count);
}

std::vector<std::uint32_t> Longs(const DNGlib::IFD& ifd, std::uint16_t tag) {
    const auto* entry = Find(ifd, tag, tiff::kLong);
    return entry == nullptr ? std::vector<std::uint32_t>()
                            : DNGlib::ParseLong(entry->value.data(), entry->count);
}

std::optional<std::uint32_t> Number(const DNGlib::IFD& ifd, std::uint16_t tag) {
    if (const auto shorts = Shorts(ifd, tag); !shorts.empty()) {
        return shorts.front();
    }
    const auto longs = Longs(ifd, tag);
    return longs.empty() ? std::nullopt : std::optional(longs.front());
}

std::optional<SRational> FirstRational(const DNGlib::IFD& ifd, std::uint16_t tag) {
    const auto* entry = Find(ifd, tag, tiff::kSRational);
    if (entry == nullptr) {
        entry = Find(ifd, tag, tiff::kRational);
    }
    if (entry == nullptr) {
        return std::nullopt;
    }
    return DNGlib::ParseSRational(entry->value.data(), 1).front();
}

std::span<const std::uint8_t> Bytes(const DNGlib::IFD& ifd, std::uint16_t tag) {
    const auto entry = ifd.find(tag);
    return entry == ifd.end() ? std::span<const std::uint8_t>() : entry->second.value;
}

std::string Text(const DNGlib::IFD& ifd, std::uint16_t tag) {
    const auto bytes = Bytes(ifd, tag);
    return {bytes.begin(), bytes.end()};
}

}  // namespace ifd_values
