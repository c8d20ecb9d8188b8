// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_DNG_REPAIR_RUN_H
#define VELMARCON_TESTS_DNG_REPAIR_RUN_H

#include <cstdint>
#include <string>
#include <vector>

#include "exif/lensdb.h"
#include "samples/camera_dng.h"
#include "tests/support/files.h"
#include "tests/support/tiff_file.h"

/// The parameters of a repair; see DNGlib::fixDNG.
struct RepairRequest {
    bool verbose = false;
    bool lens_fix = false;
    bool sensor_fix = false;
    bool dark_field_creation = false;
    bool dark_field_fix = false;
    bool estimate_rows = false;
    bool line_test = false;
    std::string lens_code;
};

/// The outcome of a repair.
struct RepairResult {
    int code = -1;
    std::string output;  ///< what was printed
};

/// The three IFDs of a written file.
struct RepairedFile {
    explicit RepairedFile(const std::vector<std::uint8_t>& bytes);

    std::vector<std::uint8_t> Preview() const;
    std::vector<std::uint16_t> Pixels() const;

    support::TiffFile file;
    support::TiffIFD ifd0;
    support::TiffIFD raw;
    support::TiffIFD exif;
};

/// A folder with one camera DNG, IN/L1.DNG, a folder OUT for the repaired DNG, and the databases. Every
/// repair starts with an empty OUT.
class RepairRun {
  public:
    RepairRun();

    /// Writes the sensor database.
    void WriteSensorDatabase(const std::string& text) const;
    /// Writes the file to be repaired.
    void WriteInput(const std::vector<std::uint8_t>& bytes) const;
    void WriteInput(const samples::CameraDngFile& file) const { WriteInput(samples::Serialize(file)); }

    RepairResult Repair(const RepairRequest& request = {});

    std::string InputPath() const { return folder_ / "IN/L1.DNG"; }
    std::string OutputPath() const { return folder_ / "OUT/L1.DNG"; }
    std::vector<std::string> OutputNames() const { return support::Names(folder_ / "OUT"); }
    RepairedFile Output() const { return RepairedFile(support::ReadFile(OutputPath())); }

    lensdb lenses;

  private:
    support::TempFolder folder_;
};

#endif  // VELMARCON_TESTS_DNG_REPAIR_RUN_H
