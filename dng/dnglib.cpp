// SPDX-License-Identifier: MIT
#include "dng/dnglib.h"

#include <array>
#include <cstdint>

#include "dng/ifd.h"
#include "errors/step_lines.h"
#include "input/read_input_data.h"
#include "sensor/iso_gain.h"
#include "tiff/tags.h"

DNGlib::DNGlib(ReadInputData* input, lensdb* lenses, sensdb* sensors)
    : input_(input), lenses_(lenses), sensors_(sensors) {}

DNGlib::DNGlib(lensdb* lenses, sensdb* sensors) : DNGlib(nullptr, lenses, sensors) {}

int DNGlib::setBlackLevel(IFD* ifd, std::uint16_t value) {
    step_lines::Begin(verbose_, "Calculating blacklevel");
    // Only the low 16 bits are kept: the tag is a SHORT.
    const auto scaled = static_cast<std::uint16_t>(value * IsoGain(input_->Exif.ISOSpeedRatings));
    step_lines::End(verbose_);
    constexpr std::array<std::uint16_t, 2> one_by_one = {1, 1};
    ifd::Add(*ifd, tag::kBlackLevel, scaled);
    ifd::Add(*ifd, tag::kBlackLevelRepeatDim, one_by_one);
    return 0;
}
