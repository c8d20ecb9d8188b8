// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_END_TO_END_CARD_H
#define VELMARCON_TESTS_END_TO_END_CARD_H

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "samples/exif_block.h"
#include "samples/shot.h"
#include "tests/support/files.h"
#include "tests/support/program.h"
#include "tests/support/tiff_file.h"

namespace end_to_end {

/// A folder with the files of a card, on which the program can be run.
class Card {
  public:
    std::string folder() const { return files_.path().string(); }
    std::string operator/(std::string_view name) const { return files_ / name; }

    /// Adds a full-size pair; see support::WritePair.
    void AddPair(const std::string& base, const samples::Shot& shot = {}) const;
    /// Adds a pair whose RAW file is a link to that of `other`: the program sees no difference, and the link
    /// takes no room.
    void AddLinkedPair(const std::string& base, const std::string& other) const;
    /// Adds a dark frame for `base` in which every word is `level`.
    void AddDarkFrame(const std::string& base, std::uint16_t level) const;

    /// Runs the program with the card as the current folder.
    support::Outcome Run(const std::vector<std::string>& arguments) const;

    support::TiffFile Dng(const std::string& base) const;

    /// The pairs' base names in the order in which the program converts them.
    std::vector<std::string> ListingOrder() const;

  private:
    support::TempFolder files_;
};

/// The names and contents of all files in a folder; a dangling link counts as empty.
using Contents = std::map<std::string, std::vector<std::uint8_t>>;
Contents ContentsOf(const std::string& folder);

/// The IFD that holds the raw image.
support::TiffIFD RawIFD(const support::TiffFile& file);

/// The raw image of a written DNG, as words.
std::vector<std::uint16_t> RawPixels(const support::TiffFile& file);

/// A full-size image with `pixel` computed for each column and row.
template <typename Pixel>
std::vector<std::uint16_t> ExpectedPixels(Pixel pixel) {
    std::vector<std::uint16_t> pixels;
    for (int y = 0; y < 2646; ++y) {
        for (int x = 0; x < 3968; ++x) {
            pixels.push_back(static_cast<std::uint16_t>(pixel(x, y)));
        }
    }
    return pixels;
}

}  // namespace end_to_end

#endif  // VELMARCON_TESTS_END_TO_END_CARD_H
