// SPDX-License-Identifier: MIT
#include "batch/proof/same_picture.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

#include "batch/proof/file_head.h"
#include "batch/proof/jpeg_exif.h"
#include "batch/proof/tiff_directory.h"
#include "tiff/tags.h"

namespace {

/// A text as EXIFInfo has it, without the NUL that may end it.
std::string UpToNul(const std::string& text) {
    return text.substr(0, text.find('\0'));
}

/// CameraSerialNumber is a text of digits; those above 2^31 stand there as negative numbers.
std::uint32_t SerialNumber(const std::string& digits) {
    constexpr int decimal = 10;
    return static_cast<std::uint32_t>(std::strtoll(digits.c_str(), nullptr, decimal));
}

/// Nothing when the bytes do not hold the DNG's directories with their values.
std::optional<PictureIdentity> IdentityIn(ByteView dng) {
    const auto first = FirstDirectory(dng);
    const auto ifd0 = first ? ReadDirectory(dng, *first) : std::nullopt;
    const auto exif = ifd0 ? ReadLinked(dng, *ifd0, tag::kExifIFD) : std::nullopt;
    if (!exif) {
        return std::nullopt;
    }
    return PictureIdentity{exif->Text(tag::kImageUniqueID), ifd0->Text(tag::kDateTimeOriginal),
                           SerialNumber(ifd0->Text(tag::kCameraSerialNumber))};
}

std::optional<PictureIdentity> IdentityInStart(const std::string& dng, std::size_t limit) {
    const auto bytes = ReadHead(dng, limit);
    return bytes ? IdentityIn(ByteView(*bytes)) : std::nullopt;
}

bool IsPrintable(char character) {
    return ' ' <= character && character <= '~';
}

}  // namespace

std::optional<PictureIdentity> IdentityOfJpg(const std::string& jpg) {
    const auto exif = ReadJpegExif(jpg);
    if (!exif) {
        return std::nullopt;
    }
    return PictureIdentity{UpToNul(exif->ImageUniqueID), UpToNul(exif->DateTimeOriginal), exif->SerialNumber};
}

std::optional<PictureIdentity> IdentityOfDng(const std::string& dng) {
    const auto identity = IdentityInStart(dng, kHeadSize);
    return identity ? identity : IdentityInStart(dng, kLongestFile);
}

std::string IdentityText(const PictureIdentity& identity) {
    constexpr std::size_t date_length = 10;  // the colons of the time stay
    std::string camera = "camera " + std::to_string(identity.camera);
    if (identity.taken.empty()) {
        return camera;
    }
    std::string taken = identity.taken;
    std::replace(taken.begin(), taken.begin() + static_cast<int>(std::min(date_length, taken.size())), ':',
                 '-');
    std::ranges::replace_if(
        taken, [](char character) { return !IsPrintable(character); }, '?');
    return taken + ", " + camera;
}
