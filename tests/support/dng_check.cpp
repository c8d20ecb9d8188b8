// SPDX-License-Identifier: MIT
#include "tests/support/dng_check.h"

#include <algorithm>
#include <map>
#include <optional>
#include <vector>

#include "tiff/tags.h"
#include "tiff/types.h"

namespace support {

namespace {

/// The number of `width` bytes at `offset`, low byte first, read without the program's own code.
std::uint32_t NumberAt(std::span<const std::uint8_t> bytes, std::size_t offset, std::size_t width) {
    std::uint32_t number = 0;
    for (std::size_t i = width; i-- > 0;) {
        number = number << 8U | bytes[offset + i];
    }
    return number;
}

struct Value {
    std::uint16_t type = 0;
    std::uint32_t count = 0;
    std::size_t offset = 0;
};

/// A part of the file.
struct Extent {
    std::size_t offset = 0;
    std::size_t size = 0;
};

/// Reads a file, keeps the first fault, and records which parts it has read.
class Inspector {
  public:
    using Ifd = std::map<std::uint16_t, Value>;

    explicit Inspector(std::span<const std::uint8_t> file) : file_(file) { seen_.push_back({0, 8}); }

    const std::string& fault() const { return fault_; }

    void Blame(const std::string& fault) {
        if (fault_.empty()) {
            fault_ = fault;
        }
    }

    /// Records a part of the file. Returns whether it lies in the file.
    bool See(std::size_t offset, std::uint64_t size, const std::string& what) {
        if (offset > file_.size() || size > file_.size() - offset) {
            Blame(what + " is outside the file");
            return false;
        }
        if (offset % 2 != 0) {
            Blame(what + " is at an odd offset");
        }
        seen_.push_back({offset, static_cast<std::size_t>(size)});
        return true;
    }

    std::uint32_t Number(std::size_t offset, std::size_t width) const {
        return NumberAt(file_, offset, width);
    }

    Ifd ReadIfd(std::size_t offset, const std::string& name) {
        Ifd ifd;
        if (!See(offset, tiff::kCountSize, name)) {
            return ifd;
        }
        const std::uint32_t count = Number(offset, tiff::kCountSize);
        const std::size_t entries = offset + tiff::kCountSize;
        if (!See(entries, std::uint64_t{count} * tiff::kEntrySize + tiff::kLinkSize, name)) {
            return ifd;
        }
        for (std::uint32_t i = 0; i < count; ++i) {
            ReadEntry(entries + std::size_t{i} * tiff::kEntrySize, name, ifd);
        }
        if (count == 0 || Number(entries + std::size_t{count} * tiff::kEntrySize, tiff::kLinkSize) != 0) {
            Blame(name + " is empty or not the last");
        }
        return ifd;
    }

    /// The first number of an integer tag that must be present.
    std::uint32_t FirstOf(const Ifd& ifd, std::uint16_t tag) {
        const auto entry = ifd.find(tag);
        if (entry == ifd.end() || entry->second.count == 0 ||
            (entry->second.type != tiff::kShort && entry->second.type != tiff::kLong)) {
            Blame("no integer in tag " + std::to_string(tag));
            return 0;
        }
        return Number(entry->second.offset, entry->second.type == tiff::kShort ? 2 : 4);
    }

    /// Records the only strip of an image of `bytes` bytes.
    std::size_t SeeStrip(const Ifd& ifd, std::uint64_t bytes, const std::string& name) {
        const std::uint32_t offset = FirstOf(ifd, tag::kStripOffsets);
        if (FirstOf(ifd, tag::kStripByteCounts) != bytes) {
            Blame(name + " strip has the wrong length");
        } else {
            See(offset, bytes, name + " strip");
        }
        return offset;
    }

    /// Requires that the parts cover the file without overlaps or gaps, except for the byte that pads a value
    /// to an even length.
    void CheckExtents() {
        std::ranges::sort(seen_, {}, &Extent::offset);
        std::size_t end = 0;
        for (const Extent& extent : seen_) {
            if (extent.offset != end && extent.offset != end + end % 2) {
                Blame(extent.offset < end ? "parts overlap at " + std::to_string(extent.offset)
                                          : "there is a gap before " + std::to_string(extent.offset));
            }
            end = extent.offset + extent.size;
        }
        if (end != file_.size()) {
            Blame("there are bytes after the end");
        }
    }

  private:
    void ReadEntry(std::size_t offset, const std::string& name, Ifd& ifd) {
        const auto tag = static_cast<std::uint16_t>(Number(offset, 2));
        Value value = {static_cast<std::uint16_t>(Number(offset + tiff::kTypeInEntry, 2)),
                       Number(offset + tiff::kCountInEntry, 4), offset + tiff::kValueInEntry};
        const std::string what = name + " tag " + std::to_string(tag);
        if (!ifd.empty() && ifd.rbegin()->first >= tag) {
            Blame(what + " is out of order");
        }
        const std::uint64_t size = std::uint64_t{tiff::ElementSize(value.type)} * value.count;
        if (tiff::ElementSize(value.type) == 0) {
            Blame(what + " has an unknown type");
        }
        if (size > tiff::kValueFieldSize) {
            value.offset = Number(value.offset, 4);
            See(value.offset, size, what);
        }
        ifd[tag] = value;
    }

    std::span<const std::uint8_t> file_;
    std::string fault_;
    std::vector<Extent> seen_;
};

}  // namespace

std::string FaultOfDng(std::span<const std::uint8_t> file, RawStrip& raw) {
    constexpr std::size_t preview_bytes = 320UL * 240 * 3;
    if (file.size() < 8 || NumberAt(file, 0, 4) != 0x002A4949) {
        return "no TIFF header";
    }
    Inspector inspector(file);
    const auto ifd0 = inspector.ReadIfd(inspector.Number(4, 4), "IFD0");
    const bool preview = ifd0.contains(tag::kSubIFDs);
    const auto raw_ifd = preview ? inspector.ReadIfd(inspector.FirstOf(ifd0, tag::kSubIFDs), "SubIFD") : ifd0;
    inspector.ReadIfd(inspector.FirstOf(ifd0, tag::kExifIFD), "EXIF IFD");
    raw.width = inspector.FirstOf(raw_ifd, tag::kImageWidth);
    raw.height = inspector.FirstOf(raw_ifd, tag::kImageLength);
    if (inspector.FirstOf(raw_ifd, tag::kBitsPerSample) != 16 ||
        inspector.FirstOf(raw_ifd, tag::kRowsPerStrip) != raw.height) {
        inspector.Blame("the image does not have 16 bits in one strip");
    }
    if (!inspector.fault().empty()) {
        return inspector.fault();
    }
    if (preview) {
        inspector.SeeStrip(ifd0, preview_bytes, "preview");
    }
    raw.size = static_cast<std::size_t>(raw.width * raw.height * 2);
    raw.offset = inspector.SeeStrip(raw_ifd, raw.size, "raw");
    inspector.CheckExtents();
    if (inspector.fault().empty() && raw.offset + raw.size != file.size()) {
        inspector.Blame("the raw strip is not the last");
    }
    return inspector.fault();
}

}  // namespace support
