// SPDX-License-Identifier: MIT
// Reads the text of lensdb.ini, and computes the DNG tags of its lenses.
#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "dng/lens_tags.h"
#include "exif/lensdb.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/require.h"
#include "fuzz/scratch_folder.h"

namespace {

/// The aperture nearest to the estimate, found by looking at every one; among equally near ones the last.
std::int32_t PlainNearest(const std::vector<std::int32_t>& apertures, std::int32_t estimate) {
    const auto distance = [&](std::int32_t aperture) {
        const std::int64_t difference = std::int64_t{aperture} - estimate;
        return difference < 0 ? -difference : difference;
    };
    std::int32_t nearest = apertures.front();
    for (const std::int32_t aperture : apertures) {
        nearest = distance(aperture) <= distance(nearest) ? aperture : nearest;
    }
    return nearest;
}

void UseApertures(const std::vector<std::int32_t>& apertures, std::int32_t estimate) {
    Require(std::ranges::is_sorted(apertures), "apertures ascend");
    const std::int32_t nearest = lens_tags::NearestAperture(apertures, estimate);
    // Farther away than this, f/1526, an estimate is not replaced by an engraved aperture.
    constexpr std::int64_t farthest = 100000000;
    const std::int32_t plain = PlainNearest(apertures, estimate);
    const std::int64_t first_distance = std::int64_t{apertures.front()} - estimate;
    if (first_distance >= -farthest && first_distance <= farthest) {
        Require(nearest == plain, "the nearest aperture is found");
    } else {
        Require(std::ranges::find(apertures, nearest) != apertures.end(), "an aperture of the list is found");
    }
}

void UseLens(const lensdb::Lensdbtype& lens) {
    constexpr std::uint32_t denominator = 65536;
    for (const std::int32_t estimate : {0, 65536, 375082, 1048576, std::numeric_limits<std::int32_t>::min(),
                                        std::numeric_limits<std::int32_t>::max()}) {
        const auto apertures = lens_tags::PictureApertures(&lens, estimate, denominator);
        Require(apertures.f_number.denominator == denominator, "an f-number keeps its denominator");
        Require(apertures.max_aperture.has_value() == !lens.Aperture.empty(),
                "a lens with apertures has a widest one");
        if (!lens.Aperture.empty()) {
            UseApertures(lens.Aperture, estimate);
        }
    }
    const Rational focal_length = lens_tags::FocalLength(lens.FocalLength);
    Require(focal_length.denominator == 1000, "a focal length is in thousandths");
    (void)lens_tags::FocalLengthIn35mmFilm(focal_length);
}

}  // namespace

void FuzzInput(std::span<const std::uint8_t> bytes) {
    static const ScratchFolder folder;
    folder.Write("lensdb.ini", bytes);
    lensdb lenses(folder.prefix());
    if (lenses.LoadLensData() != 0) {
        Require(lenses.Lenses.empty(), "an unreadable file yields no lenses");
        return;
    }
    std::size_t total = 0;
    for (const auto& [code, lens] : lenses.Lenses) {
        Require(lens_tags::FindLens(lenses, code) == &lens, "a lens is found by its code");
        UseLens(lens);
        total += code.size() + lens.Maker.size() + lens.Model.size() + lens.SerialNo.size();
    }
    Require(total <= bytes.size(), "the texts together are not longer than the file");
    const std::size_t count = lenses.Lenses.size();
    Require(lenses.LoadLensData() == 0 && lenses.Lenses.size() == count,
            "reading again gives the same lenses");
}
