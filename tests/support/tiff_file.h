// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_SUPPORT_TIFF_FILE_H
#define VELMARCON_TESTS_SUPPORT_TIFF_FILE_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace support {

/// One entry of an IFD as stored in a file.
struct TiffEntry {
    std::uint16_t type = 0;
    std::uint32_t count = 0;
    std::uint32_t offset = 0;         ///< of the value, in bytes; inside the entry if it fits
    std::vector<std::uint8_t> value;  ///< count x element size bytes

    /// The value as unsigned integers; a rational gives two.
    std::vector<std::uint32_t> Numbers() const;
    /// The only number of the value.
    std::uint32_t Number() const { return Numbers().at(0); }
    /// The bytes of a text, including its NUL.
    std::string Text() const { return {value.begin(), value.end()}; }
};

/// One IFD.
struct TiffIFD {
    std::uint32_t offset = 0;
    std::uint32_t next = 0;            ///< link to the next IFD
    std::vector<std::uint16_t> order;  ///< tags in file order
    std::map<std::uint16_t, TiffEntry> entries;

    bool Has(std::uint16_t tag) const { return entries.contains(tag); }
    /// The entry of `tag`; an exception ends the test if there is none.
    const TiffEntry& At(std::uint16_t tag) const { return entries.at(tag); }
};

/// A simple little-endian reader that shares no code with the program's writer. Throws std::out_of_range for
/// anything that reaches outside the file.
class TiffFile {
  public:
    explicit TiffFile(std::vector<std::uint8_t> bytes);

    TiffIFD ReadIFD(std::uint32_t offset) const;
    /// The IFD that the header points to.
    TiffIFD FirstIFD() const;
    std::vector<std::uint8_t> Bytes(std::uint32_t offset, std::size_t count) const;
    std::size_t size() const { return bytes_.size(); }

  private:
    std::uint32_t Get(std::size_t offset, std::size_t size) const;

    std::vector<std::uint8_t> bytes_;
};

}  // namespace support

#endif  // VELMARCON_TESTS_SUPPORT_TIFF_FILE_H
