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

    /// Path of sensdb.ini, which is not there at first.
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

/// The title of a camera's section of sensdb.ini; the sample card's camera has the number 3106091.
std::string Section(const std::string& serial = "3106091");
/// Line values of a section, in their order.
std::string Lines(const std::vector<int>& values);
/// LevelCorrection values of a section: for column x, x modulo `period`.
std::string Levels(int period);

/// Expects `actual` to be `expected`, as far as that can be told in advance: level and dither together, just
/// below a whole number, can round up to it in single precision. Of a frame's pixels one or two do.
void ExpectPixels(const std::vector<std::uint16_t>& actual, const std::vector<std::uint16_t>& expected);

}  // namespace end_to_end

#endif  // VELMARCON_TESTS_END_TO_END_SENSOR_CAMERA_H
