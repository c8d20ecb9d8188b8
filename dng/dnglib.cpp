// SPDX-License-Identifier: MIT
#include "dng/dnglib.h"

#include <array>
#include <cstdio>

#include "input/read_input_data.h"
#include "sensor/iso_gain.h"
#include "tiff/tags.h"

DNGlib::DNGlib(ReadInputData* input, lensdb* lenses, sensdb* sensors)
    : input_(input), lenses_(lenses), sensors_(sensors) {}

DNGlib::DNGlib(lensdb* lenses, sensdb* sensors) : DNGlib(nullptr, lenses, sensors) {}

int DNGlib::setBlackLevel(IFD* ifd, unsigned short value) {
    if (verbose_) {
        std::printf("Calculating blacklevel...");
    }
    // Only the low 16 bits are kept, as the tag's SHORT holds them.
    const auto scaled = static_cast<unsigned short>(value * IsoGain(input_->Exif.ISOSpeedRatings));
    if (verbose_) {
        std::printf("Done!\n");
    }
    constexpr std::array<unsigned short, 2> one_by_one = {1, 1};
    AddIFDTag(ifd, tag::kBlackLevel, scaled);
    return AddIFDTag(ifd, tag::kBlackLevelRepeatDim, one_by_one.data(), one_by_one.size());
}
