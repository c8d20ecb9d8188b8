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
#include "tests/matrix/mapped_file.h"
#include "tests/matrix/option_sets.h"
#include "tests/support/dng_check.h"

namespace matrix {

/// The raw images that undamaged inputs give: without correction, which must be the input's own pixels, and
/// with each correction at each of the camera's five ISO speeds.
class KnownPixels {
  public:
    /// Runs the program in `cases` to make the images, and keeps them in `folder`. Returns an error message,
    /// empty on success.
    std::string Make(const std::string& folder, const Child& child, CaseFolder& cases);

    /// Whether `pixels` is one of the known images: the uncorrected one, or one with this correction.
    bool Include(Kind kind, Correction correction, std::span<const std::uint8_t> pixels) const;

  private:
    struct Known {
        Kind kind;
        Correction correction;
        std::unique_ptr<MappedFile> file;  ///< kept mapped, because almost every case uses it
        support::RawStrip strip;

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
