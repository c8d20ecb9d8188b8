// SPDX-License-Identifier: MIT
#include "batch/guessed_options.h"

#include <cstdint>
#include <optional>
#include <span>

#include "base/byte_view.h"
#include "batch/proof/file_head.h"
#include "batch/proof/jpeg_exif.h"
#include "batch/proof/tiff_directory.h"
#include "sensor/iso_gain.h"
#include "tiff/tags.h"

std::vector<std::vector<std::string>> GuessedOptions(const std::string& dng, const std::string& jpg) {
    const auto bytes = ReadHead(dng, kHeadSize);
    const auto exif = ReadJpegExif(jpg);
    const ByteView head(bytes ? std::span<const std::uint8_t>(*bytes) : std::span<const std::uint8_t>());
    const auto first = FirstDirectory(head);
    const auto ifd0 = first ? ReadDirectory(head, *first) : std::nullopt;
    if (!ifd0 || !exif) {
        return {};
    }
    std::vector<std::string> seen;
    const auto linked = ReadLinked(head, *ifd0, tag::kSubIFDs);
    if (linked) {
        seen.emplace_back("-p");
    }
    if (const auto black = (linked ? *linked : *ifd0).Number(tag::kBlackLevel)) {
        // The gain was multiplied with a whole number.
        const std::uint32_t gain = IsoGain(exif->ISOSpeedRatings);
        seen.emplace_back("-b");
        seen.push_back(std::to_string(*black / gain));
    }
    std::vector<std::vector<std::string>> guesses;
    for (const std::vector<std::string>& more :
         {std::vector<std::string>(), std::vector<std::string>{"-l"}, std::vector<std::string>{"-c"},
          std::vector<std::string>{"-l", "-c"}}) {
        guesses.push_back(seen);
        guesses.back().insert(guesses.back().end(), more.begin(), more.end());
    }
    return guesses;
}
