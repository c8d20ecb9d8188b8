// SPDX-License-Identifier: MIT
#include "samples/scene.h"

#include <cmath>
#include <cstddef>
#include <vector>

#include <gtest/gtest.h>

#include "samples/sensor_dump.h"

namespace {

std::vector<samples::Patch> AllPatches(const samples::Scene& scene) {
    std::vector<samples::Patch> patches = scene.ChartPatches();
    patches.insert(patches.end(), scene.WedgePatches().begin(), scene.WedgePatches().end());
    return patches;
}

samples::Srgb ColourAt(const samples::Scene& scene, int x, int y) {
    std::vector<samples::LinearRgb> row(static_cast<std::size_t>(scene.Width()));
    scene.DrawRow(y, row);
    return samples::ToSrgb(row[static_cast<std::size_t>(x)]);
}

TEST(SampleScene, PatchesHoldTheirColourFromCornerToCorner) {
    const samples::Scene scene(samples::kSensorWidth, samples::kSensorHeight);
    ASSERT_EQ(scene.ChartPatches().size(), 24U);
    ASSERT_EQ(scene.WedgePatches().size(), 21U);
    for (const samples::Patch& patch : AllPatches(scene)) {
        EXPECT_EQ(ColourAt(scene, patch.x, patch.y), patch.colour);
        EXPECT_EQ(ColourAt(scene, patch.x + patch.width - 1, patch.y + patch.height - 1), patch.colour);
        EXPECT_GE(patch.width, 170);
        EXPECT_GE(patch.height, 250);
    }
}

TEST(SampleScene, TheWedgeRunsFromBlackToWhite) {
    const samples::Scene scene(984, 658);
    EXPECT_EQ(scene.WedgePatches().front().colour, (samples::Srgb{0, 0, 0}));
    EXPECT_EQ(scene.WedgePatches().back().colour, (samples::Srgb{255, 255, 255}));
}

TEST(SampleScene, CanBeDrawnAtAnySize) {
    for (const int width : {1, 7, 320, 984}) {
        const samples::RgbImage image = samples::SrgbImage(samples::Scene(width, width));
        EXPECT_EQ(image.samples.size(),
                  3U * static_cast<std::size_t>(width) * static_cast<std::size_t>(width));
    }
}

TEST(SampleScene, TheGreySkyIsEvenExceptForLightVignetting) {
    const samples::Scene sky = samples::Scene::GreySky(984, 658);
    std::vector<samples::LinearRgb> row(984);
    float before = 0;
    for (int y = 0; y < 658; ++y) {
        sky.DrawRow(y, row);
        for (std::size_t x = 0; x < row.size(); ++x) {
            const auto& [red, green, blue] = row[x];
            EXPECT_TRUE(red == green && green == blue);
            EXPECT_GT(green, 0.29F);
            EXPECT_LT(green, 0.351F);
            EXPECT_TRUE(x == 0 || std::abs(green - before) < 0.0005F) << x << ' ' << y;
            before = green;
        }
    }
}

TEST(SampleColour, SrgbSurvivesTheRoundTripThroughLight) {
    for (int code = 0; code < 256; ++code) {
        const auto byte = static_cast<std::uint8_t>(code);
        const samples::Srgb colour = {byte, byte, byte};
        EXPECT_EQ(samples::ToSrgb(samples::ToLinear(colour)), colour);
    }
}

}  // namespace
