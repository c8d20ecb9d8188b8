// SPDX-License-Identifier: MIT
// Reads IFDs from a little-endian TIFF file (TIFF 6.0, section 2) into the tag
// maps of the writer.
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <span>
#include <vector>

#include "base/byte_order.h"
#include "base/byte_view.h"
#include "dng/dnglib.h"
#include "dng/ifd.h"
#include "tiff/entry.h"
#include "tiff/types.h"

namespace {

/// Reads from a file, and checks every offset and length against the file's size first.
///
/// This bounds the reader. It walks three directories once each, wherever they are, with at most 65535
/// entries each, and follows no other link. All that it reads from them is no longer than the file and is
/// kept once.
class BoundedFile {
  public:
    /// `taken` counts the bytes read so far, over all directories.
    BoundedFile(std::ifstream& file, std::uint64_t& taken) : file_(file), taken_(taken) {
        const auto position = file_.tellg();
        file_.seekg(0, std::ios::end);
        size_ = static_cast<std::uint64_t>(std::streamoff(file_.tellg()));
        file_.seekg(position);
    }

    /// The `count` bytes at `position`. Fails the stream if not all of them are there, or if the total of
    /// bytes read would exceed the file's size: overlapping values could otherwise need far more memory than
    /// the file has bytes.
    std::vector<std::uint8_t> Read(std::uint64_t position, std::uint64_t count) {
        std::vector<std::uint8_t> bytes;
        if (!file_ || !IsInRange(position, count, size_) || !IsInRange(taken_, count, size_)) {
            file_.setstate(std::ios::failbit);
            return bytes;
        }
        taken_ += count;
        bytes.resize(static_cast<std::size_t>(count));
        file_.seekg(static_cast<std::streamoff>(position));
        file_.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(count));
        return bytes;
    }

    /// The entry at `position`; an empty one if the stream fails.
    tiff::Entry ReadEntry(std::uint64_t position) {
        const auto bytes = Read(position, tiff::kEntrySize);
        return tiff::ReadEntry({ByteView(bytes)}, 0).value_or(tiff::Entry());
    }

    /// The value of `entry`. Its offset counts from the first byte of the file.
    std::vector<std::uint8_t> ReadValue(const tiff::Entry& entry) {
        const std::uint64_t size = entry.ValueSize();
        if (!tiff::FitsInEntry(size)) {
            return Read(entry.Offset(), size);
        }
        const tiff::ValueBytes value(entry, static_cast<std::size_t>(size));
        return {value.get().begin(), value.get().end()};
    }

  private:
    std::ifstream& file_;
    std::uint64_t size_ = 0;
    std::uint64_t& taken_;
};

/// The `n` values at `data`.
template <typename T>
std::vector<T> Parse(const std::uint8_t* data, std::uint32_t n) {
    return ifd::Parse<T>({data, std::size_t{n} * sizeof(T)});
}

}  // namespace

int DNGlib::GetIFDs(std::ifstream* file, IFD* tags) {
    BoundedFile bounded(*file, directory_bytes_);
    const auto ifd = static_cast<std::uint64_t>(std::streamoff(file->tellg()));
    const auto count_bytes = bounded.Read(ifd, tiff::kCountSize);
    const std::uint32_t count = *file ? byte_order::GetLittle<std::uint16_t>(count_bytes) : 0;

    std::uint32_t read = 0;
    for (; read < count && *file; ++read) {
        const tiff::Entry entry = bounded.ReadEntry(tiff::EntryPosition(ifd, read));
        if (!*file) {
            break;
        }
        const auto value = bounded.ReadValue(entry);
        if (*file && tiff::ElementSize(entry.type) != 0) {
            ifd::AddBytes(*tags, entry.tag, entry.type, value);
        }
    }
    const std::uint64_t end = tiff::EntryPosition(ifd, read);
    if (*file) {
        file->seekg(static_cast<std::streamoff>(end));
    }
    return static_cast<int>(end);
}

std::vector<std::uint32_t> DNGlib::ParseLong(const std::uint8_t* data, std::uint32_t n) {
    return Parse<std::uint32_t>(data, n);
}

std::vector<std::int32_t> DNGlib::ParseSLong(const std::uint8_t* data, std::uint32_t n) {
    return Parse<std::int32_t>(data, n);
}

std::vector<std::uint16_t> DNGlib::ParseShort(const std::uint8_t* data, std::uint32_t n) {
    return Parse<std::uint16_t>(data, n);
}

std::vector<SRational> DNGlib::ParseSRational(const std::uint8_t* data, std::uint32_t n) {
    return Parse<SRational>(data, n);
}
