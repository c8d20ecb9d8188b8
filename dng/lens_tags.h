// SPDX-License-Identifier: MIT
#ifndef VELMARCON_DNG_LENS_TAGS_H
#define VELMARCON_DNG_LENS_TAGS_H

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "dng/ifd.h"
#include "exif/lensdb.h"
#include "tiff/rational.h"

/// Turns the lens and the light that the camera measured into EXIF values. F-numbers are integers in units of
/// 1/65536.
namespace lens_tags {

/// Estimates the f-number from the brightness that the camera's external sensor saw and the light that it
/// measured through the lens: the numerators of maker-note tags 0x0311 and 0x0312.
std::int32_t EstimatedFNumber(std::int32_t external_brightness, std::int32_t measured_light);

/// The lens with the code `lens_code_bits`; null if the database does not have it.
const lensdb::Lensdbtype* FindLens(const lensdb& lenses, const std::string& lens_code_bits);

/// Adds the maker, the model and, if it has one, the serial number of `lens`.
void AddLens(const lensdb::Lensdbtype& lens, IFD& exif_ifd);

/// The engraved aperture nearest to the estimate. `apertures` must be ascending and not empty.
std::int32_t NearestAperture(std::span<const std::int32_t> apertures, std::int32_t estimate);

/// The apertures in the EXIF IFD.
struct Apertures {
    Rational f_number;
    std::optional<Rational> max_aperture;  ///< if empty, the camera's value is kept
};

/// The apertures of a picture taken with `lens`, which is null for an unknown lens. The f-number is the
/// estimate or, for a lens with engraved apertures, the nearest of these, over `denominator`, that of
/// maker-note tag 0x0313.
Apertures PictureApertures(const lensdb::Lensdbtype* lens, std::int32_t estimate, std::uint32_t denominator);

/// MaxApertureValue (APEX, in thousandths) of a lens whose widest f-number is `widest`; 0 if that would be
/// negative (wider than f/1) or undefined.
Rational MaxApertureValue(std::int32_t widest);

/// FocalLength for `millimetres`, in thousandths.
Rational FocalLength(double millimetres);

/// FocalLengthIn35mmFilm for `focal_length`; 0 for a zero denominator.
std::uint16_t FocalLengthIn35mmFilm(Rational focal_length);

}  // namespace lens_tags

#endif  // VELMARCON_DNG_LENS_TAGS_H
