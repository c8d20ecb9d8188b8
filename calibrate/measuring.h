// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_MEASURING_H
#define VELMARCON_CALIBRATE_MEASURING_H

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "calibrate/calibrate_options.h"
#include "calibrate/calibration.h"
#include "calibrate/exposure_files.h"

/// Reads the exposures of a run and passes them to a Calibration. Exposures that are left out are printed and
/// kept for the report.
class Measuring {
  public:
    explicit Measuring(const CalibrateOptions& options) : options_(options) {}

    /// Reads the dark exposures. Returns false, with a message, if the run cannot continue: none could be
    /// measured, or they come from different cameras.
    [[nodiscard]] bool ReadDarks();

    /// Searches, reads the flat exposures and finishes. `listed` are the rows that are already listed.
    /// Returns false, with a message, if a flat exposure is from another camera.
    [[nodiscard]] bool Measure(std::vector<ListedRows> listed);

    /// The camera's serial number.
    std::uint32_t serial() const { return serial_.value_or(0); }
    const Calibration& calibration() const { return *calibration_; }
    const std::vector<std::string>& left_out() const { return left_out_; }  ///< one line each
    const std::vector<ExposureFile>& darks() const { return measured_; }    ///< as in Calibration::darks
    const std::vector<ExposureFile>& flats() const { return measured_flats_; }
    ExposureLoader& loader() { return loader_; }

  private:
    [[nodiscard]] bool ReadAllDarks(const std::vector<ExposureFile>& files,
                                    const std::set<std::string>& without);
    [[nodiscard]] bool LoadOne(const ExposureFile& file, std::size_t number, std::size_t count);
    [[nodiscard]] bool IsOfCamera(const ExposureFile& file);
    void LeaveOut(const std::string& name, const std::string& reason);

    const CalibrateOptions& options_;
    ExposureLoader loader_;
    std::optional<std::uint32_t> serial_;
    std::unique_ptr<Calibration> calibration_;
    std::vector<ExposureFile> measured_;
    std::vector<ExposureFile> measured_flats_;
    std::vector<std::string> left_out_;
    bool mixed_ = false;
};

#endif  // VELMARCON_CALIBRATE_MEASURING_H
