// SPDX-License-Identifier: MIT
// Finds the EXIF block of a JPEG and reads its IFD0 and its
// EXIF IFD. IFD1, thumbnails and GPS data are not read.
#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/byte_order.h"
#include "base/byte_view.h"
#include "exif/exif_info.h"
#include "exif/exposure_rules.h"
#include "exif/ifd_entry.h"
#include "tiff/entry.h"
#include "tiff/rational.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace {

constexpr std::uint16_t kStartOfImage = 0xFFD8;
constexpr std::uint16_t kEndOfImage = 0xFFD9;
constexpr std::array<std::uint8_t, 2> kApp1Marker = {0xFF, 0xE1};
constexpr std::uint64_t kMarkerSize = 2;         // bytes
constexpr std::uint64_t kSegmentLengthSize = 2;  // bytes
constexpr std::uint16_t kShortestSegment = 16;   // bytes, its length field included
constexpr std::string_view kExifHeader("Exif\0\0", 6);

/// Hands out the bytes of long values until their total exceeds the size of the file. In a real file it never
/// does, but thousands of entries that all name the same bytes would cost time and memory out of all
/// proportion.
///
/// This bounds the parser. It searches the file once for the marker, and walks IFD0 and the EXIF IFD once
/// each, wherever they are, with at most 65535 entries; it follows no other link. All copied values together,
/// and the maker notes that it walks, are no longer than the file, so the record needs no more memory than
/// the file.
class ValueBudget {
  public:
    explicit ValueBudget(std::uint64_t file_size) : left_(file_size) {}

    /// The bytes of `value`; none if they exceed the budget.
    std::span<const std::uint8_t> Take(const tiff::ValueBytes& value) {
        const auto bytes = value.get();
        if (bytes.size() > left_) {
            return {};
        }
        left_ -= bytes.size();
        return bytes;
    }

  private:
    std::uint64_t left_;
};

void Take(const IFEntry& entry, ValueBudget& budget, std::string& field) {
    if (entry.Format == tiff::kAscii) {
        const auto bytes = budget.Take(entry.StringValue);
        field.assign(bytes.begin(), bytes.end());
    }
}

void Take(const IFEntry& entry, ValueBudget& budget, std::vector<std::uint8_t>& field) {
    if (entry.Format == tiff::kUndefined) {
        const auto bytes = budget.Take(entry.UndefinedValue);
        field.assign(bytes.begin(), bytes.end());
    }
}

void Take(const IFEntry& entry, std::uint16_t& field) {
    if (entry.Format == tiff::kShort) {
        field = entry.ShortValue;
    }
}

void Take(const IFEntry& entry, Rational& field) {
    if (entry.Format == tiff::kRational) {
        field = entry.RationalValue;
    }
}

void TakeShortOrLong(const IFEntry& entry, std::uint32_t& field) {
    if (entry.Format == tiff::kLong) {
        field = entry.LongValue;
    } else if (entry.Format == tiff::kShort) {
        field = entry.ShortValue;
    }
}

void StoreIFD0Entry(const IFEntry& entry, ValueBudget& budget, EXIFInfo& exif) {
    switch (entry.Tag) {
        case tag::kBitsPerSample:
            return Take(entry, exif.BitsPerSample);
        case tag::kImageDescription:
            return Take(entry, budget, exif.ImageDescription);
        case tag::kMake:
            return Take(entry, budget, exif.Make);
        case tag::kModel:
            return Take(entry, budget, exif.Model);
        case tag::kOrientation:
            return Take(entry, exif.Orientation);
        case tag::kSoftware:
            return Take(entry, budget, exif.Software);
        case tag::kDateTime:
            return Take(entry, budget, exif.DateTime);
        case tag::kCopyright:
            return Take(entry, budget, exif.Copyright);
        default:
            return;
    }
}

void StoreExposureTime(const IFEntry& entry, EXIFInfo& exif) {
    if (entry.Format == tiff::kRational) {
        exif.ExposureTime = SnapExposureTime(entry.RationalValue);
    }
}

/// Accepts only a RATIONAL: the camera's JPEGs store the bits of a signed value in one. An SRATIONAL
/// deliberately leaves the field cleared.
void StoreExposureBias(const IFEntry& entry, EXIFInfo& exif) {
    if (entry.Format == tiff::kRational) {
        exif.ExposureBiasValue = ExposureBiasInThirds(AsSigned(entry.RationalValue));
    }
}

/// Decodes the maker note at once, before the entries that follow it.
void StoreMakerNote(const IFEntry& entry, ValueBudget& budget, EXIFInfo& exif) {
    if (entry.Format == tiff::kUndefined) {
        Take(entry, budget, exif.MakerNote);
        exif.ParseMakerNote();
    }
}

void StoreExifEntry(const IFEntry& entry, ValueBudget& budget, EXIFInfo& exif) {
    switch (entry.Tag) {
        case tag::kExposureTime:
            return StoreExposureTime(entry, exif);
        case tag::kFNumber:
            return Take(entry, exif.FNumber);
        case tag::kExposureProgram:
            return Take(entry, exif.ExposureProgram);
        case tag::kISOSpeedRatings:
            return Take(entry, exif.ISOSpeedRatings);
        case tag::kExifVersion:
            return Take(entry, budget, exif.ExifVersion);
        case tag::kDateTimeOriginal:
            return Take(entry, budget, exif.DateTimeOriginal);
        case tag::kDateTimeDigitized:
            return Take(entry, budget, exif.DateTimeDigitized);
        case tag::kShutterSpeedValue:
            return Take(entry, exif.ShutterSpeedValue);
        case tag::kExposureBiasValue:
            return StoreExposureBias(entry, exif);
        case tag::kSubjectDistance:
            return Take(entry, exif.SubjectDistance);
        case tag::kMeteringMode:
            return Take(entry, exif.MeteringMode);
        case tag::kFlash:
            return Take(entry, exif.Flash);
        case tag::kFocalLength:
            return Take(entry, exif.FocalLength);
        case tag::kMakerNote:
            return StoreMakerNote(entry, budget, exif);
        case tag::kSubSecTimeOriginal:
            return Take(entry, budget, exif.SubSecTimeOriginal);
        case tag::kPixelXDimension:
            return TakeShortOrLong(entry, exif.PixelXDimension);
        case tag::kPixelYDimension:
            return TakeShortOrLong(entry, exif.PixelYDimension);
        case tag::kFileSource:
            return Take(entry, exif.FileSource);
        case tag::kSceneType:
            return Take(entry, exif.SceneType);
        case tag::kDigitalZoomRatio:
            return Take(entry, exif.DigitalZoomRatio);
        case tag::kFocalLengthIn35mmFilm:
            return Take(entry, exif.FocalLengthIn35mmFilm);
        case tag::kSceneCaptureType:
            return Take(entry, exif.SceneCaptureType);
        // These four are stored without a format check; with an unexpected format they become 0 or empty.
        case tag::kMaxApertureValue:
            exif.MaxApertureValue = entry.RationalValue;
            return;
        case tag::kLightSource:
            exif.LightSource = entry.ShortValue;
            return;
        case tag::kWhiteBalance:
            exif.WhiteBalance = entry.ShortValue;
            return;
        case tag::kImageUniqueID:
            exif.ImageUniqueID.clear();
            return Take(entry, budget, exif.ImageUniqueID);
        default:
            return;
    }
}

/// Whether the whole IFD at `offset` lies in the block: its count, its entries and its link.
bool HoldsIFD(const tiff::Block& block, std::uint64_t offset) {
    return block.bytes.Holds(offset, tiff::IFDSize(block.Get<std::uint16_t>(offset)));
}

/// Calls `store` with each entry of the IFD at `offset`, in order. The IFD must lie in the block.
template <typename Store>
void ForEachEntry(const tiff::Block& block, std::uint64_t offset, Store store) {
    const auto count = block.Get<std::uint16_t>(offset);
    for (std::uint16_t i = 0; i < count; ++i) {
        store(parseIFEntry(block, tiff::EntryPosition(offset, i)));
    }
}

constexpr std::uint64_t kByteOrderMarkSize = 2;  // bytes

/// Reads the byte order mark of `block`, which must contain the whole header. Returns 0 or a result of the
/// parser.
int ReadByteOrder(tiff::Block& block) {
    const auto mark = block.bytes.Bytes(block.base, kByteOrderMarkSize);
    if (mark[0] != mark[1] || (mark[0] != 'I' && mark[0] != 'M')) {
        return EXIFInfo::kUnknownByteOrder;
    }
    block.order = mark[0] == 'I' ? ByteOrder::kLittleEndian : ByteOrder::kBigEndian;
    return 0;
}

}  // namespace

int EXIFInfo::parseFrom(const unsigned char* buf, unsigned int len) {
    constexpr unsigned int shortest_jpeg = 4;  // bytes: SOI and EOI
    if (buf == nullptr || len < shortest_jpeg) {
        return kNoExif;
    }
    const std::span<const std::uint8_t> bytes(buf, len);
    if (byte_order::GetBig<std::uint16_t>(bytes) != kStartOfImage ||
        byte_order::GetBig<std::uint16_t>(bytes.last(kMarkerSize)) != kEndOfImage) {
        return kNotAJpeg;
    }
    clear();

    // Finds the first APP1 marker at any byte position, without following segment lengths.
    const auto marker = std::search(bytes.begin(), bytes.end(), kApp1Marker.begin(), kApp1Marker.end());
    const ByteView view(bytes);
    const auto segment = static_cast<std::uint64_t>(marker - bytes.begin()) + kMarkerSize;
    if (!view.Holds(segment, kSegmentLengthSize)) {
        return kNoExif;
    }
    const auto segment_length = view.Get<std::uint16_t>(segment, ByteOrder::kBigEndian);
    if (segment_length < kShortestSegment || !view.Holds(segment, segment_length)) {
        return kCorruptExif;
    }
    // The payload includes what follows the segment: a value may lie after the segment's end.
    const auto payload = bytes.subspan(static_cast<std::size_t>(segment + kSegmentLengthSize));
    return parseFromEXIFSegment(payload.data(), static_cast<unsigned int>(payload.size()));
}

int EXIFInfo::parseFrom(const std::string& data) {
    if (data.size() > std::numeric_limits<unsigned int>::max()) {
        return kNotAJpeg;
    }
    return parseFrom(reinterpret_cast<const unsigned char*>(data.data()),
                     static_cast<unsigned int>(data.size()));
}

int EXIFInfo::parseFromEXIFSegment(const unsigned char* buf, unsigned int len) {
    if (buf == nullptr || len < kExifHeader.size()) {
        return kNoExif;
    }
    const std::span<const std::uint8_t> bytes(buf, len);
    if (!std::equal(kExifHeader.begin(), kExifHeader.end(), bytes.begin())) {
        return kNoExif;
    }
    tiff::Block block = {ByteView(bytes), kExifHeader.size()};
    if (!block.bytes.Holds(block.base, tiff::kHeaderSize)) {
        return kCorruptExif;
    }
    if (const int error = ReadByteOrder(block); error != 0) {
        return error;
    }
    LittleEndian = block.order == ByteOrder::kLittleEndian;

    const std::uint64_t magic = block.base + kByteOrderMarkSize;
    const std::uint64_t ifd0 = block.base + block.Get<std::uint32_t>(magic + sizeof(tiff::kMagic));
    if (block.Get<std::uint16_t>(magic) != tiff::kMagic || !HoldsIFD(block, ifd0)) {
        return kCorruptExif;
    }
    ValueBudget budget(len);
    std::uint64_t exif_ifd = len;  // none
    ForEachEntry(block, ifd0, [&](const IFEntry& entry) {
        if (entry.Tag == tag::kExifIFD) {
            exif_ifd = block.base + entry.Data;
        }
        StoreIFD0Entry(entry, budget, *this);
    });

    // An EXIF IFD so close to the end that not even its link would fit counts as missing.
    if (!block.bytes.Holds(exif_ifd, tiff::kLinkSize)) {
        return 0;
    }
    if (!HoldsIFD(block, exif_ifd)) {
        return kCorruptExif;
    }
    ForEachEntry(block, exif_ifd, [&](const IFEntry& entry) { StoreExifEntry(entry, budget, *this); });
    return 0;
}
