// SPDX-License-Identifier: MIT
#include "dng/lens_tags.h"

#include <bit>
#include <cmath>
#include <cstdlib>

#include "base/truncate.h"
#include "tiff/tags.h"

namespace lens_tags {

namespace {

constexpr std::uint32_t kThousandths = 1000;

}  // namespace

std::int32_t EstimatedFNumber(std::int32_t external_brightness, std::int32_t measured_light) {
    constexpr std::uint32_t offset = 285082;
    // The arithmetic may wrap at 32 bits, so it uses unsigned numbers, for which that is defined.
    return std::bit_cast<std::int32_t>(std::bit_cast<std::uint32_t>(external_brightness) -
                                       std::bit_cast<std::uint32_t>(measured_light) + offset);
}

const lensdb::Lensdbtype* FindLens(const lensdb& lenses, const std::string& lens_code_bits) {
    const auto lens = lenses.Lenses.find(lens_code_bits);
    return lens == lenses.Lenses.end() ? nullptr : &lens->second;
}

void AddLens(const lensdb::Lensdbtype& lens, IFD& exif_ifd) {
    ifd::Add(exif_ifd, tag::kLensMake, lens.Maker);
    ifd::Add(exif_ifd, tag::kLensModel, lens.Model);
    if (!lens.SerialNo.empty()) {
        ifd::Add(exif_ifd, tag::kLensSerialNumber, lens.SerialNo);
    }
}

std::int32_t NearestAperture(std::span<const std::int32_t> apertures, std::int32_t estimate) {
    // The loop ends where the distance grows but not where it stays equal: of two equally near entries, the
    // later one wins.
    std::int64_t best = 100000000;
    std::int32_t nearest = apertures.front();
    for (const std::int32_t aperture : apertures) {
        const std::int64_t distance = std::abs(std::int64_t{aperture} - estimate);
        if (best < distance) {
            break;
        }
        best = distance;
        nearest = aperture;
    }
    return nearest;
}

Apertures PictureApertures(const lensdb::Lensdbtype* lens, std::int32_t estimate, std::uint32_t denominator) {
    if (lens == nullptr || lens->Aperture.empty()) {
        return {{std::bit_cast<std::uint32_t>(estimate), denominator}, std::nullopt};
    }
    const std::int32_t engraved = NearestAperture(lens->Aperture, estimate);
    return {{std::bit_cast<std::uint32_t>(engraved), denominator}, MaxApertureValue(lens->Aperture.front())};
}

Rational MaxApertureValue(std::int32_t widest) {
    // Evaluated from left to right in double precision, so that f/2 gives 1999 thousandths, not 2000.
    const double value = 2000.0 * std::log(widest / lensdb::kApertureUnits) / std::log(2.0);
    return {Truncate<std::uint32_t>(value), kThousandths};
}

Rational FocalLength(double millimetres) {
    return {Truncate<std::uint32_t>(millimetres * kThousandths + 0.5), kThousandths};
}

std::uint16_t FocalLengthIn35mmFilm(Rational focal_length) {
    constexpr double crop_factor = 1.33;
    const SRational millimetres = AsSigned(focal_length);
    if (millimetres.denominator == 0) {
        return 0;
    }
    return Truncate<std::uint16_t>(millimetres.numerator * crop_factor / millimetres.denominator + 0.5);
}

}  // namespace lens_tags
