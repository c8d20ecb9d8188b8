// SPDX-License-Identifier: MIT
// Develops the DNGs that the program writes with LibRaw, a raw developer.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "samples/sample_card.h"
#include "samples/scene.h"
#include "samples/sensor_dump.h"
#include "tests/end_to_end/card.h"
#include "tests/end_to_end/lab_color.h"
#include "tests/end_to_end/raw_developer.h"
#include "tests/end_to_end/write_dng.h"
#include "tests/support/test_pair.h"

namespace end_to_end {

namespace {

using Options = std::vector<std::string>;
using Chart = std::vector<samples::LinearRgb>;

/// How much a developed chart differs from the scene's.
struct ChartDifference {
    double exposure = 0;     ///< the factor by which its linear values match best
    double mean = 0;         ///< Delta E over all patches
    double max = 0;          ///< Delta E
    double neutral_max = 0;  ///< Delta E of the grey patches
};

/// The middle half of every patch, away from the edges and from the sample's defective columns.
Chart DevelopedChart(const DevelopedRaw& picture, const samples::Scene& scene) {
    Chart chart;
    for (const samples::Patch& patch : scene.ChartPatches()) {
        chart.push_back(picture.Mean(patch.x + patch.width / 4, patch.y + patch.height / 4, patch.width / 2,
                                     patch.height / 2));
    }
    return chart;
}

Chart TrueChart(const samples::Scene& scene) {
    Chart chart;
    for (const samples::Patch& patch : scene.ChartPatches()) {
        chart.push_back(samples::ToLinear(patch.colour));
    }
    return chart;
}

/// Least squares over all linear values.
float Exposure(const Chart& developed, const Chart& wanted) {
    float product = 0;
    float square = 0;
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        product = std::inner_product(wanted[i].begin(), wanted[i].end(), developed[i].begin(), product);
        square = std::inner_product(developed[i].begin(), developed[i].end(), developed[i].begin(), square);
    }
    return product / square;
}

ChartDifference Compare(Chart developed, const Chart& wanted) {
    constexpr std::size_t kFirstNeutral = 18;
    const float exposure = Exposure(developed, wanted);
    ChartDifference difference = {.exposure = static_cast<double>(exposure)};
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        for (float& value : developed[i]) {
            value *= exposure;
        }
        const double delta = DeltaE(ToLab(developed[i]), ToLab(wanted[i]));
        difference.mean += delta / static_cast<double>(wanted.size());
        difference.max = std::max(difference.max, delta);
        if (i >= kFirstNeutral) {
            difference.neutral_max = std::max(difference.neutral_max, delta);
        }
    }
    return difference;
}

/// The test scene, photographed at one ISO speed.
class PhotographedChart {
  public:
    explicit PhotographedChart(std::uint16_t iso = 160)
        : scene_(samples::kSensorWidth, samples::kSensorHeight) {
        EXPECT_EQ(samples::WriteCard(folder_.path().string(), {.pairs = 1, .iso = iso}), "");
    }

    /// Converts with `options`, develops the DNG and compares it with the scene.
    ChartDifference Difference(const Options& options) const {
        const DevelopedRaw picture(WriteDng(folder_, options));
        return Compare(DevelopedChart(picture, scene_), TrueChart(scene_));
    }

  private:
    support::TempFolder folder_;
    samples::Scene scene_;
};

// The level above black of the scene's white, see samples::ExposeSensor.
constexpr double kWhiteSignal = 0.75 * 16383;

TEST(LibRaw, UnpacksTheSensorDataUnchanged) {
    const support::TempFolder folder;
    support::WritePair(folder.path().string(), kBase);
    for (const Options& options : {Options{}, Options{"-p"}, Options{"-c"}, Options{"-p", "-c", "-b"}}) {
        const UnpackedRaw raw = Unpack(WriteDng(folder, options));
        EXPECT_EQ(raw.width, 3968);
        EXPECT_EQ(raw.height, 2646);
        EXPECT_TRUE(raw.pixels == ExpectedPixels(support::TestPixel)) << testing::PrintToString(options);
    }
}

TEST(LibRaw, TakesThePreviewAsThumbnail) {
    const support::TempFolder folder;
    support::WritePair(folder.path().string(), kBase);
    EXPECT_TRUE(Unpack(WriteDng(folder, {})).thumbnail.empty());
    const std::string path = WriteDng(folder, {"-p"});
    const std::vector<std::uint8_t> file = support::ReadFile(path);
    const auto raw_strip = file.end() - std::ptrdiff_t{3968} * 2646 * 2;
    EXPECT_TRUE(Unpack(path).thumbnail == std::vector<std::uint8_t>(raw_strip - 230400, raw_strip));
}

// After subtracting the black level, only noise and differences between columns remain: 0.03 on average, 0.12
// at most.
TEST(LibRaw, DevelopsTheColoursOfTheSceneGivenABlackLevel) {
    const PhotographedChart chart;
    for (const Options& options : {Options{"-b"}, Options{"-b", "-p"}}) {
        const ChartDifference difference = chart.Difference(options);
        EXPECT_LT(difference.mean, 0.1);
        EXPECT_LT(difference.max, 0.3);
        EXPECT_NEAR(difference.exposure, (16383 - 92) / kWhiteSignal, 0.002);
    }
}

// Everything, including noise and columns, is 16 times as strong at that speed: 0.35 on average, 1.6 at most.
TEST(LibRaw, DevelopsTheColoursOfTheSceneAtTheHighestSpeed) {
    const ChartDifference difference = PhotographedChart(2500).Difference({"-b"});
    EXPECT_LT(difference.mean, 0.5);
    EXPECT_LT(difference.max, 2.0);
    EXPECT_NEAR(difference.exposure, (16383 - 1472) / kWhiteSignal, 0.01);
}

/// The grey wedge, photographed at one ISO speed.
class PhotographedWedge {
  public:
    PhotographedWedge(std::uint16_t iso, bool noise) : scene_(samples::kSensorWidth, samples::kSensorHeight) {
        EXPECT_EQ(samples::WriteCard(folder_.path().string(), {.pairs = 1, .iso = iso, .noise = noise}), "");
        if (noise) {
            read_noise_ = samples::SensorOptions().read_noise * static_cast<float>(samples::IsoGain(iso));
        }
    }

    /// Converts with `options`, develops the DNG, and returns the largest chroma of the steps in which every
    /// colour exceeds the read noise. Darker steps are left out: LibRaw clips values below black to zero, so
    /// noise makes these steps too light, and the white balance amplifies that in red and blue.
    double LargestChroma(const Options& options) const {
        const DevelopedRaw picture(WriteDng(folder_, options));
        double largest = 0;
        for (const samples::Patch& step : scene_.WedgePatches()) {
            if (read_noise_ <= WeakestSignal(step)) {
                const auto middle = picture.Mean(step.x + step.width / 4, step.y + step.height / 4,
                                                 step.width / 2, step.height / 2);
                largest = std::max(largest, Chroma(ToLab(middle)));
            }
        }
        return largest;
    }

  private:
    /// The weakest colour, red, in raw units.
    static float WeakestSignal(const samples::Patch& step) {
        const samples::Rational red = samples::Shot().level_red;
        return samples::ToLinear(step.colour)[1] * static_cast<float>(kWhiteSignal) *
               static_cast<float>(red.numerator) / static_cast<float>(red.denominator);
    }

    support::TempFolder folder_;
    samples::Scene scene_;
    float read_noise_ = 0;
};

class GreyWedge : public testing::TestWithParam<std::uint16_t> {};

// The largest measured chroma is 1.3.
TEST_P(GreyWedge, IsNeutralWithABlackLevel) {
    const PhotographedWedge wedge(GetParam(), true);
    EXPECT_LT(wedge.LargestChroma({"-b"}), 2.0);
    EXPECT_LT(wedge.LargestChroma({"-b", "-p"}), 2.0);
}

TEST_P(GreyWedge, IsNeutralWithABlackLevelDownToBlackWithoutNoise) {
    EXPECT_LT(PhotographedWedge(GetParam(), false).LargestChroma({"-b"}), 2.0);
}

TEST_P(GreyWedge, IsTintedWithoutABlackLevel) {
    EXPECT_GT(PhotographedWedge(GetParam(), true).LargestChroma({}), 8.0);
}

INSTANTIATE_TEST_SUITE_P(Speeds, GreyWedge, testing::Values(160, 320, 640, 1250, 2500),
                         [](const auto& iso) { return "Iso" + std::to_string(iso.param); });

// Without a black level, the sensor's dark level of 92 lightens the shadows. The white balance amplifies it
// in red and blue and so tints them: by 6 for the darkest patch, by 1 for the lightest.
TEST(LibRaw, DevelopsPaleShadowsWithoutABlackLevel) {
    const PhotographedChart chart;
    for (const Options& options : {Options{}, Options{"-p"}}) {
        const ChartDifference difference = chart.Difference(options);
        EXPECT_LT(difference.mean, 3.0);
        EXPECT_LT(difference.max, 6.5);
    }
}

// The sample's sensor responds according to the ColorMatrix2 of the plain model, so the different matrix of
// the raw variant must shift the colours. The two matrices determine by how much: 5.08 on average, 13.18 for
// the violet patch. Greys depend on the white balance alone and do not change.
TEST(LibRaw, DevelopsTheRawVariantThroughItsOwnMatrices) {
    const PhotographedChart chart;
    for (const Options& options : {Options{"-b", "-c"}, Options{"-b", "-c", "-p"}}) {
        const ChartDifference difference = chart.Difference(options);
        EXPECT_NEAR(difference.mean, 5.08, 0.1);
        EXPECT_NEAR(difference.max, 13.18, 0.2);
        EXPECT_LT(difference.neutral_max, 0.5);
    }
}

}  // namespace

}  // namespace end_to_end
