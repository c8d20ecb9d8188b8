// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_BATCH_PROOF_MADE_DNG_H
#define VELMARCON_TESTS_BATCH_PROOF_MADE_DNG_H

#include <cstdint>
#include <string>
#include <vector>

#include "app/run_settings.h"
#include "batch/proof/written_dng.h"
#include "exif/lensdb.h"
#include "samples/camera_dng.h"
#include "samples/shot.h"
#include "tests/support/files.h"
#include "tests/support/tiff_file.h"

/// A folder with the files of the picture L1, the databases, and a DNG that the program makes of them.
class MadeDng {
  public:
    static constexpr const char* kBase = "L1";

    /// The pair, with pixels of support::TestPixel.
    void WritePair(const samples::Shot& shot = {}) const;
    /// A dark frame whose pixels are all `level`.
    void WriteDarkFrame(std::uint16_t level) const;
    /// The camera's DNG, in place of a pair.
    void WriteCameraDng(const samples::CameraDngFile& file) const;
    void WriteSensorDatabase(const std::string& text) const;
    /// That of the sample card.
    void WriteLensDatabase();

    /// Converts the pair or repairs the camera's DNG with the settings.
    void Make();

    /// Changes bits of a byte of the DNG, in the file and in `bytes`.
    void Flip(std::size_t at, std::uint8_t bits);

    std::string Path() const { return folder / "made/L1.DNG"; }
    /// Whether the DNG, as it is by now, is what it must be.
    std::string Check();
    /// The same of the file `dng` as it is.
    std::string CheckFile(const std::string& dng, const ByteObserver& observer = nullptr);

    support::TiffFile file() const { return support::TiffFile(bytes); }
    /// Where pixel `x` of row `y` stands in the DNG.
    std::size_t PixelAt(std::size_t x, std::size_t y) const;
    std::uint16_t Pixel(std::size_t x, std::size_t y) const;
    void SetPixel(std::size_t x, std::size_t y, std::uint16_t value);

    const support::TempFolder folder;
    RunSettings settings;
    lensdb lenses;
    bool camera_dng = false;
    std::vector<std::uint8_t> bytes;  ///< of the DNG
};

#endif  // VELMARCON_TESTS_BATCH_PROOF_MADE_DNG_H
