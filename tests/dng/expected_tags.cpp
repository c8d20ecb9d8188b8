// SPDX-License-Identifier: MIT
#include "tests/dng/expected_tags.h"

#include <cstdio>
#include <string_view>

namespace expected {

namespace {

using namespace std::string_literals;
using samples::Ascii;
using samples::Bytes;
using samples::Long;
using samples::Rationals;
using samples::Set;
using samples::Short;
using samples::Shorts;
using samples::SRationals;
using samples::Undefined;

constexpr std::uint16_t kAscii = 2;

Tags RawTags(const Mode& mode) {
    Tags tags = {
        Long(254, 0),
        Long(256, 8),
        Long(257, 6),
        Short(258, 16),
        Short(262, 32803),
        Short(277, 1),
        Long(278, 6),
        Long(279, 96),
        Rationals(282, {{300, 1}}),
        Rationals(283, {{300, 1}}),
        Shorts(33421, {2, 2}),
        Bytes(33422, {0, 1, 1, 2}),
        Long(50717, mode.preview ? 16384 : 16383),
        Shorts(50719, {2, 2}),
        Shorts(50720, {4, 2}),
        Long(50733, 500),
        Rationals(50738, {{0, 1}}),
    };
    if (mode.black_level) {
        Set(tags, Shorts(50713, {1, 1}));
        Set(tags, Short(50714, 368));
    }
    return tags;
}

Tags PreviewTags() {
    return {
        Long(254, 1),
        Long(256, 320),
        Long(257, 240),
        Shorts(258, {8, 8, 8}),
        Short(262, 2),
        Short(277, 3),
        Long(278, 240),
        Long(279, 230400),
        Rationals(282, {{72, 1}}),
        Rationals(283, {{72, 1}}),
        Long(330, 0),
    };
}

Tags MainTags() {
    return {
        Short(259, 1),
        Ascii(271, "Leica Camera AG"),
        Ascii(272, "M8 Digital Camera"),
        Long(273, 0),
        Short(274, 6),
        Short(284, 1),
        Short(296, 2),
        Ascii(305, "1.092"),
        Ascii(315, ""),
        Ascii(33432, ""),
        Long(34665, 0),
        Short(34859, 0),
        Ascii(36867, "2007:08:02 22:13:49"),
        Rationals(37390, {{3729, 1}}),
        Rationals(37391, {{3764, 1}}),
        Short(37392, 2),
        Bytes(37398, {0, 0, 0, 1}),
        Bytes(50706, {1, 4, 0, 0}),
        Ascii(50708, "M8 Digital Camera in use"),
        SRationals(50723, {{1, 1}, {0, 1}, {0, 1}, {0, 1}, {1, 1}, {0, 1}, {0, 1}, {0, 1}, {1, 1}}),
        SRationals(50724, {{1, 1}, {0, 1}, {0, 1}, {0, 1}, {1, 1}, {0, 1}, {0, 1}, {0, 1}, {1, 1}}),
        Rationals(50728, {{16384, 34488}, {16385, 16386}, {16387, 20567}}),
        Rationals(50731, {{1, 1}}),
        Rationals(50732, {{1, 1}}),
        Ascii(50735, "3106091"),
        Short(50741, 1),
        Short(50778, 17),
        Short(50779, 21),
    };
}

// clang-format off
Tags PlainMatrices() {
    return {
        SRationals(50721, {{625, 597}, {-110, 207}, {16, 125},
                           {-138, 319}, {761, 625}, {112, 463},
                           {-150, 1693}, {229, 926}, {179, 250}}),
        SRationals(50722, {{307, 400}, {-439, 2000}, {-14, 459},
                           {-293, 500}, {2345, 1661}, {187, 1007},
                           {-97, 400}, {115, 287}, {544, 827}}),
    };
}

Tags RawVariantMatrices() {
    return {
        SRationals(50721, {{107, 125}, {-335, 1647}, {-2, 303},
                           {-53, 125}, {34, 25}, {73, 250},
                           {-37, 500}, {144, 583}, {449, 500}}),
        SRationals(50722, {{313, 500}, {-59, 579}, {-29, 617},
                           {-210, 563}, {229, 200}, {193, 1000},
                           {-72, 511}, {59, 200}, {621, 1000}}),
    };
}
// clang-format on

void SetAll(Tags& tags, const Tags& more) {
    for (const auto& entry : more) {
        Set(tags, entry);
    }
}

std::string Line(unsigned int tag, unsigned int type, std::uint32_t count,
                 const std::vector<std::uint8_t>& value) {
    return std::to_string(tag) + " type " + std::to_string(type) + " count " + std::to_string(count) + ":" +
           Hex(value) + "\n";
}

}  // namespace

ReadInputData Record() {
    ReadInputData record;
    record.Width = 8;
    record.Height = 6;
    record.ImageSize = 48;
    for (std::uint16_t i = 0; i < 48; ++i) {
        record.ImageData.push_back(static_cast<std::uint16_t>(331 * i));
    }
    record.PreviewSize = 230400;
    record.PreviewData.resize(230400);
    for (std::size_t i = 0; i < record.PreviewData.size(); ++i) {
        record.PreviewData[i] = static_cast<std::uint8_t>(i % 251);
    }
    record.RawFileName = "L1000001.RAW";

    EXIFInfo& exif = record.Exif;
    exif.Make = "Leica Camera AG\0"s;
    exif.Model = "M8 Digital Camera in use\0"s;
    exif.Orientation = 6;
    exif.Software = "1.092\0"s;
    exif.DateTimeOriginal = "2007:08:02 22:13:49\0"s;
    exif.DateTimeDigitized = "2007:08:02 22:13:50\0"s;
    exif.ExposureTime = {4000, 1000000};
    exif.ISOSpeedRatings = 640;
    exif.ExposureProgram = 3;
    exif.ExifVersion = {'0', '2', '2', '1'};
    exif.ShutterSpeedValue = {0xFFFF0000, 65536};
    exif.ExposureBiasValue = {-21845, 65537};
    exif.FocalLength = {50000, 1000};
    exif.DigitalZoomRatio = {3, 2};
    exif.FocalLengthIn35mmFilm = 68;
    exif.Flash = 16;
    exif.MaxApertureValue = {131073, 65538};
    exif.WhiteBalance = 9;
    exif.ImageUniqueID = "00000000000000000000000000000001\0"s;
    exif.MeteringMode = 2;
    exif.LightSource = 4;
    exif.FileSource = 0x0503;
    exif.SceneType = 0x0701;
    exif.SceneCaptureType = 5;
    exif.SerialNumber = 3106091;
    exif.LensCode = 33;
    exif.LensCodeBits = "100001";
    exif.Mn0311 = {42150, 65536};
    exif.Mn0312 = {0xFFFF8000, 65536};  // -32768: the estimate is 42150 + 32768 + 285082 = 360000
    exif.Mn0313 = {367002, 65500};
    exif.Mn0322 = {16384, 34488};
    exif.Mn0323 = {16385, 16386};
    exif.Mn0324 = {16387, 20567};
    exif.MakerNote = {'L', 'E', 'I', 'C', 'A', 1, 2};
    return record;
}

Tags Ifd0(const Mode& mode) {
    Tags tags = mode.preview ? PreviewTags() : RawTags(mode);
    SetAll(tags, MainTags());
    SetAll(tags, mode.raw_variant ? RawVariantMatrices() : PlainMatrices());
    if (mode.raw_variant) {
        Set(tags, Ascii(272, "M8RAW Digital Camera"));
    }
    return tags;
}

Tags SubIfd(const Mode& mode) {
    if (!mode.preview) {
        return {};
    }
    Tags tags = RawTags(mode);
    SetAll(tags, {Short(259, 1), Long(273, 0), Short(284, 1), Short(296, 2)});
    return tags;
}

Tags ExifIfd() {
    return {
        Rationals(33434, {{4000, 1000000}}),
        Rationals(33437, {{360000, 65500}}),
        Short(34850, 3),
        Short(34855, 640),
        Undefined(36864, {'0', '2', '2', '1'}),
        Ascii(36868, "2007:08:02 22:13:50"),
        SRationals(37377, {{-65536, 65536}}),
        SRationals(37380, {{-21845, 65537}}),
        Rationals(37381, {{131073, 65538}}),
        Short(37383, 2),
        Short(37384, 4),
        Short(37385, 16),
        Rationals(37386, {{50000, 1000}}),
        Undefined(37500, {'L', 'E', 'I', 'C', 'A', 1, 2}),
        Undefined(41728, {3}),
        Undefined(41729, {1}),
        Short(41987, 9),
        Rationals(41988, {{3, 2}}),
        Short(41989, 68),
        Short(41990, 5),
        Ascii(42016, "00000000000000000000000000000001"),
    };
}

std::string Listing(const Tags& tags) {
    std::string listing;
    for (const auto& entry : tags) {
        std::vector<std::uint8_t> value = entry.value;
        if (entry.type == kAscii && value.size() > 4 && value.size() % 2 != 0) {
            value.push_back(0);
        }
        listing += Line(entry.tag, entry.type, entry.count, value);
    }
    return listing;
}

std::string Listing(const DNGlib::IFD& ifd) {
    std::string listing;
    for (const auto& [tag, entry] : ifd) {
        listing += Line(entry.tag, entry.type, entry.count, entry.value);
        if (entry.tag != tag || entry.length != entry.value.size()) {
            listing +=
                "    under tag " + std::to_string(tag) + ", length " + std::to_string(entry.length) + "\n";
        }
    }
    return listing;
}

std::string Hex(const std::vector<std::uint8_t>& bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += ' ';
        text += digits[byte / 16];
        text += digits[byte % 16];
    }
    return text;
}

}  // namespace expected
