// SPDX-License-Identifier: MIT
#include "fuzz/same_record.h"

#include <bit>
#include <cstdint>
#include <tuple>

namespace {

std::uint32_t Bits(float value) {
    return std::bit_cast<std::uint32_t>(value);
}

auto Texts(const EXIFInfo& exif) {
    return std::tie(exif.ImageDescription, exif.Make, exif.Model, exif.Software, exif.DateTime,
                    exif.DateTimeOriginal, exif.DateTimeDigitized, exif.SubSecTimeOriginal, exif.Copyright,
                    exif.ExifVersion, exif.ImageUniqueID, exif.MakerNote, exif.LensCodeBits);
}

auto Numbers(const EXIFInfo& exif) {
    return std::tie(exif.LittleEndian, exif.Orientation, exif.BitsPerSample, exif.ISOSpeedRatings,
                    exif.ExposureProgram, exif.FocalLengthIn35mmFilm, exif.Flash, exif.WhiteBalance,
                    exif.MeteringMode, exif.LightSource, exif.FileSource, exif.SceneType,
                    exif.SceneCaptureType, exif.PixelXDimension, exif.PixelYDimension, exif.SerialNumber,
                    exif.LensCode, exif.FrameSelector);
}

auto Rationals(const EXIFInfo& exif) {
    return std::tie(exif.ExposureTime, exif.FNumber, exif.ShutterSpeedValue, exif.ExposureBiasValue,
                    exif.SubjectDistance, exif.FocalLength, exif.DigitalZoomRatio, exif.MaxApertureValue,
                    exif.Mn0311, exif.Mn0312, exif.Mn0313, exif.Mn0322, exif.Mn0323, exif.Mn0324);
}

auto Ratios(const EXIFInfo& exif) {
    return std::tuple(Bits(exif.Mn0322Ratio), Bits(exif.Mn0323Ratio), Bits(exif.Mn0324Ratio));
}

}  // namespace

bool SameRecord(const EXIFInfo& a, const EXIFInfo& b) {
    return Texts(a) == Texts(b) && Numbers(a) == Numbers(b) && Rationals(a) == Rationals(b) &&
           Ratios(a) == Ratios(b);
}
