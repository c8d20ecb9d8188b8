// SPDX-License-Identifier: MIT
#include "fuzz/written_dng.h"

#include <utility>

#include "fuzz/require.h"
#include "tests/support/dng_check.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace {

/// The value of a tag that has one LONG.
std::uint32_t Long(const support::TiffIFD& ifd, std::uint16_t tag) {
    Require(ifd.Has(tag), "a tag that every image needs is present");
    const auto& entry = ifd.At(tag);
    Require(entry.type == tiff::kLong && entry.count == 1, "an offset or a size is one LONG");
    return entry.Number();
}

}  // namespace

WrittenDng::WrittenDng(std::vector<std::uint8_t> bytes, bool preview)
    : bytes_(std::move(bytes)), file_(bytes_) {
    support::RawStrip raw;
    const std::string fault = support::FaultOfDng(bytes_, raw);
    Require(fault.empty(), fault.c_str());
    ifd0_ = file_.FirstIFD();
    Require(ifd0_.Has(tag::kSubIFDs) == preview, "the raw image has a SubIFD if there is a preview");
    raw_ifd_ = preview ? file_.ReadIFD(Long(ifd0_, tag::kSubIFDs)) : ifd0_;
    exif_ifd_ = file_.ReadIFD(Long(ifd0_, tag::kExifIFD));
}

std::span<const std::uint8_t> WrittenDng::Strip(const support::TiffIFD& ifd) const {
    return std::span(bytes_).subspan(Long(ifd, tag::kStripOffsets), Long(ifd, tag::kStripByteCounts));
}

void RequireText(const support::TiffEntry& entry, std::string text) {
    if (text.empty() || text.back() != '\0') {
        text += '\0';
    }
    Require(entry.type == tiff::kAscii && entry.Text() == text, "a text is written unchanged");
}
