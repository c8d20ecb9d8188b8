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

/// Reads the exposures of a run and hands them to a Calibration. What is left out is printed, and kept for
/// the report.
class Measuring {
  public:
    explicit Measuring(const CalibrateOptions& options) : options_(options) {}

    /// Reads the dark exposures. Returns false, with a message, when there is nothing to go on with: not one
    /// could be measured, or they are not of one camera.
    [[nodiscard]] bool ReadDarks();

    /// Searches, reads the flat exposures and finishes. `listed` are rows that are listed already. Returns
    /// false, with a message, when a flat exposure is of another camera.
    [[nodiscard]] bool Measure(std::vector<ListedRows> listed);

    /// The camera.
    std::uint32_t serial() const { return serial_.value_or(0); }
    const Calibration& calibration() const { return *calibration_; }
    const std::vector<std::string>& left_out() const { return left_out_; }  ///< a line each
    const std::vector<ExposureFile>& darks() const { return measured_; }    ///< as in Calibration::darks
    const std::vector<ExposureFile>& flats() const { return measured_flats_; }
    ExposureLoader& loader() { return loader_; }

  private:
    bool ReadAllDarks(const std::vector<ExposureFile>& files, const std::set<std::string>& without);
    bool LoadOne(const ExposureFile& file, std::size_t number, std::size_t count);
    bool IsOfCamera(const ExposureFile& file);
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
