// SPDX-License-Identifier: MIT
#include "calibrate/measuring.h"

#include <cstdio>

#include "calibrate/dark_check.h"
#include "calibrate/progress.h"

void Measuring::LeaveOut(const std::string& name, const std::string& reason) {
    progress::Clear();
    left_out_.push_back(name + ": " + reason);
    std::printf("Left out %s: %s.\n", name.c_str(), reason.c_str());
}

/// The first exposure decides which camera it is.
bool Measuring::IsOfCamera(const ExposureFile& file) {
    serial_ = serial_.value_or(loader_.serial());
    if (loader_.serial() == *serial_) {
        return true;
    }
    progress::Clear();
    std::printf(
        "%s is from camera %u, the exposures before it are from camera %u: name exposures of one camera.\n",
        file.base.c_str(), loader_.serial(), *serial_);
    mixed_ = true;
    return false;
}

bool Measuring::LoadOne(const ExposureFile& file, std::size_t number, std::size_t count) {
    progress::Show("Reading " + file.base + ", " + std::to_string(number + 1) + " of " +
                   std::to_string(count));
    if (loader_.Load(file) != 0) {
        left_out_.push_back(file.base + ": cannot be read");
        return false;
    }
    return IsOfCamera(file);
}

bool Measuring::ReadAllDarks(const std::vector<ExposureFile>& files, const std::set<std::string>& without) {
    calibration_ = std::make_unique<Calibration>();
    measured_.clear();
    for (std::size_t i = 0; i < files.size(); ++i) {
        const ExposureFile& file = files[i];
        if (without.contains(file.folder + file.base)) {
            continue;
        }
        if (!LoadOne(file, i, files.size())) {
            if (mixed_) {
                return false;
            }
            continue;
        }
        const std::string reason =
            calibration_->AddDark({.name = file.base, .iso = loader_.iso(), .pixels = loader_.pixels()});
        if (reason.empty()) {
            measured_.push_back(file);
        } else {
            LeaveOut(file.base, reason);
        }
    }
    progress::Clear();
    return true;
}

bool Measuring::ReadDarks() {
    const std::vector<ExposureFile> files = FindExposures(options_.darks, left_out_);
    for (const std::string& problem : left_out_) {
        std::printf("%s.\n", problem.c_str());
    }
    if (!ReadAllDarks(files, {})) {
        return false;
    }
    const std::vector<std::size_t> far = FarFromOthers(calibration_->darks().exposures());
    if (!far.empty()) {
        // The sums already include these exposures, so the others are read again.
        std::vector<ExposureFile> others;
        std::set<std::string> without;
        for (const std::size_t i : far) {
            LeaveOut(measured_[i].base, "its columns differ too much from those of the others");
            without.insert(measured_[i].folder + measured_[i].base);
        }
        for (const ExposureFile& file : measured_) {
            others.push_back(file);
        }
        if (!ReadAllDarks(others, without)) {
            return false;
        }
    }
    if (measured_.empty()) {
        std::printf("No dark exposure could be measured.\n");
        return false;
    }
    return true;
}

bool Measuring::Measure(std::vector<ListedRows> listed) {
    calibration_->SetListed(std::move(listed));
    calibration_->Search();
    std::vector<std::string> problems;
    const std::vector<ExposureFile> files = FindExposures(options_.flats, problems);
    for (const std::string& problem : problems) {
        std::printf("%s.\n", problem.c_str());
        left_out_.push_back(problem);
    }
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (!LoadOne(files[i], i, files.size())) {
            if (mixed_) {
                return false;
            }
            continue;
        }
        const std::string reason =
            calibration_->AddFlat({.name = files[i].base, .iso = loader_.iso(), .pixels = loader_.pixels()});
        if (reason.empty()) {
            measured_flats_.push_back(files[i]);
        } else {
            LeaveOut(files[i].base, reason);
        }
    }
    progress::Clear();
    calibration_->Finish(options_.doubtful);
    return true;
}
