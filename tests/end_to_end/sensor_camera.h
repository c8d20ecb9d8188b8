// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_END_TO_END_SENSOR_CAMERA_H
#define VELMARCON_TESTS_END_TO_END_SENSOR_CAMERA_H

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "samples/shot.h"
#include "tests/end_to_end/card.h"
#include "tests/support/files.h"
#include "tests/support/program.h"

namespace end_to_end {

/// A card and, in another folder, the program with the sensor database of the card's camera.
class SensorCamera {
  public:
    Card card;

    /// The path of sensdb.ini, which does not exist at first.
    std::string Database() const { return program_ / "sensdb.ini"; }
    std::string DatabaseText() const;

    /// Adds a full-size pair whose RAW file is `words`.
    void AddExposure(const std::string& base, std::span<const std::uint16_t> words,
                     const samples::Shot& shot = {}) const;

    /// Runs the program with the card as the current folder.
    support::Outcome Run(const std::vector<std::string>& arguments) const;

    std::vector<std::uint16_t> Pixels(const std::string& base) const { return RawPixels(card.Dng(base)); }

  private:
    support::TempFolder program_;
};

/// The header of a camera's section in sensdb.ini; the sample card's camera has the number 3106091.
std::string Section(const std::string& serial = "3106091");
/// The Line values of a section, in order.
std::string Lines(const std::vector<int>& values);
/// The LevelCorrection values of a section: for column x, x modulo `period`.
std::string Levels(int period);

/// Expects `actual` to equal `expected`, except for one or two pixels of a frame: if level and dither
/// together are just below an integer, single precision may round them up to it.
void ExpectPixels(const std::vector<std::uint16_t>& actual, const std::vector<std::uint16_t>& expected);

}  // namespace end_to_end

#endif  // VELMARCON_TESTS_END_TO_END_SENSOR_CAMERA_H
