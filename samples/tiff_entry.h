// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_TIFF_ENTRY_H
#define VELMARCON_SAMPLES_TIFF_ENTRY_H

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "base/byte_order.h"

/// Files as the camera writes them, with every field open to change, for tests, benchmarks and
/// demonstrations.
namespace samples {

struct Rational {
    std::uint32_t numerator = 0;
    std::uint32_t denominator = 1;
};

struct SRational {
    std::int32_t numerator = 0;
    std::int32_t denominator = 1;
};

/// The same 64 bits as a RATIONAL, as the camera stores some signed values in its JPEGs.
Rational AsUnsigned(SRational value);

/// One IFD entry (TIFF 6.0, section 2). The value is kept low byte first and converted to the file's byte
/// order when the IFD is serialised.
struct Entry {
    std::uint16_t tag = 0;
    std::uint16_t type = 0;
    std::uint32_t count = 0;               ///< written unchanged, so it may contradict `value`
    std::vector<std::uint8_t> value = {};  ///< stored outside the entry if longer than 4 bytes
    std::uint32_t unit = 1;  ///< size in bytes of the units that a change of byte order reverses: 1, 2 or 4
    /// For damaged files: replaces the 4-byte value field, that is, the value or its offset. The value is
    /// then not written anywhere.
    std::optional<std::uint32_t> raw_field = std::nullopt;
};

/// `text` followed by a NUL, unless it already ends in one; the count includes the NUL.
Entry Ascii(std::uint16_t tag, std::string_view text);
/// `text` as given, without an added NUL.
Entry AsciiUnterminated(std::uint16_t tag, std::string_view text);
Entry Bytes(std::uint16_t tag, std::vector<std::uint8_t> values);
Entry Undefined(std::uint16_t tag, std::vector<std::uint8_t> values);
Entry Shorts(std::uint16_t tag, const std::vector<std::uint16_t>& values);
Entry Longs(std::uint16_t tag, const std::vector<std::uint32_t>& values);
Entry SLongs(std::uint16_t tag, const std::vector<std::int32_t>& values);
Entry Rationals(std::uint16_t tag, const std::vector<Rational>& values);
Entry SRationals(std::uint16_t tag, const std::vector<SRational>& values);
/// Any type and count with a raw value field, for damaged files.
Entry RawEntry(std::uint16_t tag, std::uint16_t type, std::uint32_t count, std::uint32_t field);

Entry Short(std::uint16_t tag, std::uint16_t value);
Entry Long(std::uint16_t tag, std::uint32_t value);

/// The first entry of `tag`, or null if there is none. Valid until the list changes.
Entry* Find(std::vector<Entry>& entries, std::uint16_t tag);
const Entry* Find(const std::vector<Entry>& entries, std::uint16_t tag);
/// Replaces the first entry of the same tag with `entry`; if there is none, inserts it before the first
/// higher tag.
void Set(std::vector<Entry>& entries, Entry entry);
/// Removes every entry of `tag`; returns whether there was one.
bool Remove(std::vector<Entry>& entries, std::uint16_t tag);

/// Size in bytes of an IFD with `entries`: count, entries and link, without the values outside the entries.
std::uint32_t TableSize(const std::vector<Entry>& entries);

/// Appends the IFD of `entries`, in their order, to `table`, and the values outside the entries to `values`
/// (each padded to an even length, as TIFF 6.0 asks for). `values_offset` is the file offset of the start of
/// `values`; `next_ifd` is the link to the next IFD.
void AppendIfd(const std::vector<Entry>& entries, ByteOrder order, std::uint32_t values_offset,
               std::uint32_t next_ifd, std::vector<std::uint8_t>& table, std::vector<std::uint8_t>& values);

/// Appends the low `bytes` (1 to 4) bytes of `value` in byte order `order`.
void AppendNumber(std::vector<std::uint8_t>& out, ByteOrder order, std::uint32_t value, std::uint32_t bytes);

}  // namespace samples

#endif  // VELMARCON_SAMPLES_TIFF_ENTRY_H
