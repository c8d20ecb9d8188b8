// SPDX-License-Identifier: MIT
#ifndef VELMARCON_DNG_IFD_VALUES_H
#define VELMARCON_DNG_IFD_VALUES_H

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "dng/dnglib.h"
#include "tiff/rational.h"

/// Values of the tags in an IFD that was read from a file. A tag that is missing or of another type has none.
namespace ifd_values {

std::vector<std::uint16_t> Shorts(const DNGlib::IFD& ifd, std::uint16_t tag);
std::vector<std::uint32_t> Longs(const DNGlib::IFD& ifd, std::uint16_t tag);
/// The first value of a SHORT or a LONG.
std::optional<std::uint32_t> Number(const DNGlib::IFD& ifd, std::uint16_t tag);
/// The first value of a RATIONAL or an SRATIONAL, its halves taken as signed.
std::optional<SRational> FirstRational(const DNGlib::IFD& ifd, std::uint16_t tag);
/// The bytes of a value, whatever its type; none without the tag.
std::span<const std::uint8_t> Bytes(const DNGlib::IFD& ifd, std::uint16_t tag);
/// The bytes of a value as text, whatever its type; empty without the tag.
std::string Text(const DNGlib::IFD& ifd, std::uint16_t tag);

}  // namespace ifd_values

#endif  // VELMARCON_DNG_IFD_VALUES_H
