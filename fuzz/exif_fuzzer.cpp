// SPDX-License-Identifier: MIT
// Parses a whole JPEG in memory, as found on a card, or only the payload of its APP1 segment.
#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "exif/exif_info.h"
#include "exif/maker_note.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/require.h"
#include "fuzz/same_record.h"
#include "input/read_input_data.h"

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t kValueFieldBytes = 4;

/// A value longer than the value field of an entry is a copy of bytes in the file.
void RequireCopyOf(Bytes file, Bytes value) {
    Require(value.size() <= kValueFieldBytes ||
                std::search(file.begin(), file.end(), value.begin(), value.end()) != file.end(),
            "a long value is a copy of bytes of the file");
}

Bytes AsBytes(const std::string& text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

void RequireValuesOfTheFile(Bytes file, const EXIFInfo& exif) {
    const std::array values = {AsBytes(exif.ImageDescription),
                               AsBytes(exif.Make),
                               AsBytes(exif.Model),
                               AsBytes(exif.Software),
                               AsBytes(exif.DateTime),
                               AsBytes(exif.DateTimeOriginal),
                               AsBytes(exif.DateTimeDigitized),
                               AsBytes(exif.SubSecTimeOriginal),
                               AsBytes(exif.Copyright),
                               AsBytes(exif.ImageUniqueID),
                               Bytes(exif.ExifVersion),
                               Bytes(exif.MakerNote)};
    std::size_t total = 0;
    for (const Bytes value : values) {
        RequireCopyOf(file, value);
        total += value.size();
    }
    Require(total <= file.size(), "the values together are not longer than the file");
}

void RequireDecodedNote(const EXIFInfo& exif) {
    Require(exif.LensCode < 64 && exif.FrameSelector < 4, "lens code and frame selector fit into their bits");
    Require(exif.LensCodeBits.empty() || exif.LensCodeBits == maker_note::LensCodeText(exif.LensCode),
            "the text of the lens code matches its number");
}

bool IsResult(int result) {
    return result == 0 || (result >= EXIFInfo::kNotAJpeg && result <= EXIFInfo::kCorruptExif);
}

void ReadAsSegment(Bytes segment) {
    EXIFInfo exif;
    const int result = exif.parseFromEXIFSegment(segment.data(), static_cast<unsigned int>(segment.size()));
    Require(IsResult(result) && result != EXIFInfo::kNotAJpeg, "the result is one of those for a segment");
    RequireValuesOfTheFile(segment, exif);
}

}  // namespace

void FuzzInput(std::span<const std::uint8_t> bytes) {
    ReadAsSegment(bytes);
    EXIFInfo exif;
    const int result = exif.parseFrom(bytes.data(), static_cast<unsigned int>(bytes.size()));
    Require(IsResult(result), "the result is one of the parser's");
    if (result == EXIFInfo::kNotAJpeg) {
        Require(SameRecord(exif, EXIFInfo()), "a file that is not a JPEG leaves the record unchanged");
        return;
    }
    RequireValuesOfTheFile(bytes, exif);
    RequireDecodedNote(exif);
    Require(exif.ExposureBiasValue.denominator == 3 || exif.ExposureBiasValue == kClearedSRational,
            "the exposure bias is in thirds");

    EXIFInfo again;
    const std::string text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    Require(again.parseFrom(text) == result && SameRecord(again, exif),
            "the same bytes give the same record");

    ReadInputData record;
    record.Exif = exif;
    record.PrintExifData();
}
