// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_TIFF_ENTRY_H
#define VELMARCON_SAMPLES_TIFF_ENTRY_H

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

/// Files as the camera writes them, with every field open to change: for tests, benchmarks and
/// demonstrations.
namespace samples {

enum class ByteOrder : std::uint8_t { kLittle, kBig };

struct Rational {
    std::uint32_t numerator = 0;
    std::uint32_t denominator = 1;
};

struct SRational {
    std::int32_t numerator = 0;
    std::int32_t denominator = 1;
};

/// The same 64 bits, as the camera stores some signed values in its JPEGs.
Rational AsUnsigned(SRational value);

/// One directory entry (TIFF 6.0, section 2). The value is kept low byte first and put into the file's byte
/// order when the directory is serialised.
struct Entry {
    std::uint16_t tag = 0;
    std::uint16_t type = 0;
    std::uint32_t count = 0;               ///< written as it is, so it may contradict `value`
    std::vector<std::uint8_t> value = {};  ///< more than 4 bytes: stands outside the entry
    std::uint32_t unit = 1;                ///< bytes that a change of byte order reverses together: 1, 2 or 4
    /// For damaged files: what the 4-byte value field holds, in place of the value or of its offset. The
    /// value is then not written anywhere.
    std::optional<std::uint32_t> raw_field = std::nullopt;
};

/// `text` is stored as given and, unless it already ends in a NUL, closed by one; the count includes the NUL.
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
/// Any type and count with a raw value field: for damaged files.
Entry RawEntry(std::uint16_t tag, std::uint16_t type, std::uint32_t count, std::uint32_t field);

Entry Short(std::uint16_t tag, std::uint16_t value);
Entry Long(std::uint16_t tag, std::uint32_t value);

/// The first entry of `tag`, null when there is none. Valid until the list changes.
Entry* Find(std::vector<Entry>& entries, std::uint16_t tag);
const Entry* Find(const std::vector<Entry>& entries, std::uint16_t tag);
/// Puts `entry` in place of the first entry of its tag or, when there is none, before the first higher tag.
void Set(std::vector<Entry>& entries, Entry entry);
/// Removes every entry of `tag`; false when there was none.
bool Remove(std::vector<Entry>& entries, std::uint16_t tag);

/// Size in bytes of a directory of `entries`: count, entries and link, without the values outside it.
std::uint32_t TableSize(const std::vector<Entry>& entries);

/// Appends the directory of `entries`, in their order, to `table`, and the values that stand outside it to
/// `values` (each padded to an even length, as TIFF 6.0 asks for). `values_offset` is what the file counts as
/// the position of the start of `values`; `next_ifd` is the link to the next directory.
void AppendIfd(const std::vector<Entry>& entries, ByteOrder order, std::uint32_t values_offset,
               std::uint32_t next_ifd, std::vector<std::uint8_t>& table, std::vector<std::uint8_t>& values);

/// Appends the low `bytes` (1 to 4) bytes of `value` in byte order `order`.
void AppendNumber(std::vector<std::uint8_t>& out, ByteOrder order, std::uint32_t value, std::uint32_t bytes);

}  // namespace samples

#endif  // VELMARCON_SAMPLES_TIFF_ENTRY_H
