// SPDX-License-Identifier: MIT
#include "calibrate/calibration.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "calibrate/dark_check.h"
#include "calibrate/dark_defects.h"
#include "calibrate/light_defects.h"
#include "calibrate/statistics.h"
#include "sensor/iso_gain.h"

namespace {

using namespace sensor_grid;

constexpr float kReach = 3;  // deviations up to which a pixel counts in full
// Larger, because noise in the light differs between colours and from middle to corner.
constexpr float kReachInLight = 4;

constexpr float kLeastNoise = 0.3F;  // weaker noise does not show in whole numbers

int Reach(float reach, const PixelNoise& noise) {
    return static_cast<int>(std::lround(std::clamp(reach * noise.with_rows, 1.0F, 5000.0F)));
}

}  // namespace

std::string Calibration::AddDark(const ExposureImage& image) {
    DarkExposure exposure = {.name = image.name,
                             .iso = image.iso,
                             .gain = static_cast<float>(IsoGain(image.iso)),
                             .noise = MeasureNoise(image.pixels),
                             .columns = {}};
    if (exposure.noise.pixel < kLeastNoise) {
        return "not an exposure of a sensor: its pixels do not vary";
    }
    MeasureBlocks(image.pixels, BlockRows::kAll, Reach(kReach, exposure.noise), blocks_);
    exposure.columns = ColumnLevels(blocks_, exposure.noise.with_rows);
    std::string reason = WhyNotDark(blocks_, exposure.columns, exposure.gain);
    if (reason.empty()) {
        darks_.Add(blocks_, std::move(exposure));
    }
    return reason;
}

DefectMask Calibration::MaskOf(std::span<const ListedRows> listed, bool with_doubtful) const {
    DefectMask mask;
    for (const ListedRows& rows : listed) {
        mask.Add(rows.column, rows.first_row, rows.end_row);
    }
    for (const Defect& defect : defects_) {
        if (with_doubtful || !defect.doubtful) {
            mask.Add(defect.column, defect.first_row, defect.end_row);
        }
    }
    return mask;
}

void Calibration::Search() {
    combined_ = darks_.Combined();
    defects_ = FindDarkDefects(darks_, combined_);
    mask_ = MaskOf(listed_, false);
    levels_ = ComputeLevels(darks_, combined_, mask_);
}

std::string Calibration::AddFlat(const ExposureImage& image) {
    const PixelNoise noise = MeasureNoise(image.pixels);
    const int reach = Reach(kReachInLight, noise);
    MeasureBlocks(image.pixels, BlockRows::kEven, reach, blocks_);
    MeasureBlocks(image.pixels, BlockRows::kOdd, reach, odd_blocks_);
    std::vector<float> dark = levels_.absolute;
    for (float& level : dark) {
        level *= static_cast<float>(IsoGain(image.iso));
    }
    return flats_.Add(blocks_, odd_blocks_, dark);
}

void Calibration::Finish(bool with_doubtful) {
    const std::vector<Defect> in_light = FindLightDefects(flats_, MaskOf({}, false));
    defects_.insert(defects_.end(), in_light.begin(), in_light.end());
    std::ranges::sort(defects_, {}, [](const Defect& defect) {
        return std::make_tuple(defect.column, defect.first_row, defect.end_row);
    });
    mask_ = MaskOf(listed_, with_doubtful);
    levels_ = ComputeLevels(darks_, combined_, mask_);
}

float StripeSize(std::span<const float> columns, const DefectMask& mask) {
    constexpr float far = 6;  // deviations
    double squares = 0;
    double count = 0;
    for (const int begin : {0, kHalf}) {
        std::vector<float> values;
        for (int x = begin; x < begin + kHalf; ++x) {
            if (mask.SoundBlocks(x) == kBlocks) {
                values.push_back(columns[static_cast<std::size_t>(x)]);
            }
        }
        std::vector<float> copy = values;
        const float median = statistics::Median(copy);
        const float deviation = statistics::DeviationAround(median, copy);
        for (const float value : values) {
            if (std::abs(value - median) <= far * deviation) {
                squares += static_cast<double>((value - median) * (value - median));
                ++count;
            }
        }
    }
    return count > 0 ? static_cast<float>(std::sqrt(squares / count)) : 0;
}

Stripes Calibration::StripesOf(std::size_t dark) const {
    const DarkExposure& exposure = darks_.exposures()[dark];
    float weight = 0;
    for (const DarkExposure& other : darks_.exposures()) {
        weight += DarkStack::Weight(other);
    }
    const float own = DarkStack::Weight(exposure);
    const bool alone = darks_.exposures().size() == 1;
    std::vector<float> left(kColumns);
    for (std::size_t x = 0; x < left.size(); ++x) {
        const float own_level = exposure.columns[x] / exposure.gain;
        const float others =
            ((weight * levels_.absolute[x]) - (own * own_level)) / (alone ? weight : weight - own);
        left[x] = exposure.columns[x] - (exposure.gain * others);
    }
    return {.before = StripeSize(exposure.columns, mask_),
            .after = alone ? -1 : StripeSize(left, mask_),
            .noise = exposure.noise.pixel / std::sqrt(static_cast<float>(kRows))};
}
