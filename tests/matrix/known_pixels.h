// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_KNOWN_PIXELS_H
#define VELMARCON_TESTS_MATRIX_KNOWN_PIXELS_H

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "tests/matrix/case_folder.h"
#include "tests/matrix/child.h"
#include "tests/matrix/dng_check.h"
#include "tests/matrix/mapped_file.h"
#include "tests/matrix/option_sets.h"

namespace matrix {

/// The raw images that undamaged inputs give: without a correction, where they must be the input's own
/// pixels, and with each correction at each of the camera's five speeds.
class KnownPixels {
  public:
    /// Lets the program make them in `cases` and keeps them in `folder`. Returns an empty text, or what went
    /// wrong.
    std::string Make(const std::string& folder, const Child& child, CaseFolder& cases);

    /// Whether a raw image is one of them: the uncorrected one, or one of this correction.
    bool Include(Kind kind, Correction correction, std::span<const std::uint8_t> pixels) const;

  private:
    struct Known {
        Kind kind;
        Correction correction;
        std::unique_ptr<MappedFile> file;  ///< stays mapped: it is looked at in almost every case
        RawStrip strip;

        std::span<const std::uint8_t> Pixels() const {
            return file->bytes().subspan(strip.offset, strip.size);
        }
    };

    std::string MakeOne(const std::string& folder, const Child& child, CaseFolder& cases,
                        const OptionSet& options, std::uint16_t iso);
    std::string FaultOfUncorrected() const;

    std::vector<Known> known_;
};

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_KNOWN_PIXELS_H
