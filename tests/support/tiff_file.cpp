// SPDX-License-Identifier: MIT
#include "tests/support/tiff_file.h"

#include <array>
#include <utility>

namespace support {

namespace {

/// Size in bytes of one value of each TIFF type from 0 to 10.
constexpr std::array<std::size_t, 11> kElementSizes = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8};

/// Size in bytes of one number of each type; a rational holds two.
constexpr std::array<std::size_t, 11> kNumberSizes = {0, 1, 1, 2, 4, 4, 1, 1, 2, 4, 4};

}  // namespace

std::vector<std::uint32_t> TiffEntry::Numbers() const {
    const std::size_t size = kNumberSizes.at(type);
    std::vector<std::uint32_t> numbers;
    for (std::size_t i = 0; i + size <= value.size(); i += size) {
        std::uint32_t number = 0;
        for (std::size_t k = size; k-- > 0;) {
            number = number * 256 + value.at(i + k);
        }
        numbers.push_back(number);
    }
    return numbers;
}

TiffFile::TiffFile(std::vector<std::uint8_t> bytes) : bytes_(std::move(bytes)) {}

std::uint32_t TiffFile::Get(std::size_t offset, std::size_t size) const {
    std::uint32_t number = 0;
    for (std::size_t k = size; k-- > 0;) {
        number = number * 256 + bytes_.at(offset + k);
    }
    return number;
}

std::vector<std::uint8_t> TiffFile::Bytes(std::uint32_t offset, std::size_t count) const {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        bytes.push_back(bytes_.at(offset + i));
    }
    return bytes;
}

TiffIFD TiffFile::FirstIFD() const {
    return ReadIFD(Get(4, 4));
}

TiffIFD TiffFile::ReadIFD(std::uint32_t offset) const {
    TiffIFD ifd;
    ifd.offset = offset;
    const std::uint32_t count = Get(offset, 2);
    std::uint32_t position = offset + 2;
    for (std::uint32_t i = 0; i < count; ++i, position += 12) {
        TiffEntry entry;
        const auto tag = static_cast<std::uint16_t>(Get(position, 2));
        entry.type = static_cast<std::uint16_t>(Get(position + 2, 2));
        entry.count = Get(position + 4, 4);
        const std::size_t size = kElementSizes.at(entry.type) * entry.count;
        entry.offset = size <= 4 ? position + 8 : Get(position + 8, 4);
        entry.value = Bytes(entry.offset, size);
        ifd.order.push_back(tag);
        ifd.entries[tag] = entry;
    }
    ifd.next = Get(position, 4);
    return ifd;
}

}  // namespace support
