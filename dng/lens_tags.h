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

/// Rules by which the lens and the light that the camera measured become EXIF values. F-numbers are integers
/// in units of 1/65536.
namespace lens_tags {

/// The f-number that the camera estimates from the brightness its external sensor saw and the light it
/// measured through the lens, the numerators of maker-note tags 0x0311 and 0x0312.
std::int32_t EstimatedFNumber(std::int32_t external_brightness, std::int32_t measured_light);

/// The lens that `lens_code_bits` names; null when the database lacks it.
const lensdb::Lensdbtype* FindLens(const lensdb& lenses, const std::string& lens_code_bits);

/// Adds the maker, the model and, if it has one, the serial number of `lens`.
void AddLens(const lensdb::Lensdbtype& lens, IFD& exif_ifd);

/// The engraved aperture that the estimate stands for. `apertures` is ascending and not empty.
std::int32_t NearestAperture(std::span<const std::int32_t> apertures, std::int32_t estimate);

/// What the EXIF IFD says of the apertures.
struct Apertures {
    Rational f_number;
    std::optional<Rational> max_aperture;  ///< nothing: what the camera wrote stands
};

/// The apertures of a picture taken with `lens` (null: unknown). The camera's estimate is over `denominator`,
/// that of maker-note tag 0x0313; a lens with engraved apertures gives the one that it stands for.
Apertures PictureApertures(const lensdb::Lensdbtype* lens, std::int32_t estimate, std::uint32_t denominator);

/// MaxApertureValue (APEX, in thousandths) of a lens whose widest f-number is `widest`. 0 where that would be
/// negative (wider than f/1) or has no value.
Rational MaxApertureValue(std::int32_t widest);

/// FocalLength of `millimetres`, in thousandths.
Rational FocalLength(double millimetres);

/// FocalLengthIn35mmFilm of `focal_length`; 0 for a zero denominator.
std::uint16_t FocalLengthIn35mmFilm(Rational focal_length);

}  // namespace lens_tags

#endif  // VELMARCON_DNG_LENS_TAGS_H
