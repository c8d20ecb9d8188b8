// SPDX-License-Identifier: MIT
#include "calibrate/pictures.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <sstream>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "samples/seeded_noise.h"
#include "system/run_tool.h"
#include "tests/support/files.h"

namespace {

using Place = std::pair<int, int>;

/// The pixels of a PNG in `folder`, which gnuplot reads; row 0 is the lowest one.
std::map<Place, int> PixelsOf(const support::TempFolder& folder, const std::string& name) {
    support::WriteFile(
        folder / "read.gnuplot",
        "set table 'pixels'\nplot '" + name + "' binary filetype=png using 1 with image\nunset table\n");
    EXPECT_TRUE(RunTool(folder.prefix(), "gnuplot", {"read.gnuplot"}));
    std::map<Place, int> pixels;
    std::istringstream lines(support::ReadText(folder / "pixels"));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream numbers(line);
        int x = 0;
        int y = 0;
        int grey = 0;
        if (numbers >> x >> y >> grey) {
            pixels[{x, y}] = grey;
        }
    }
    return pixels;
}

TEST(PictureWriter, GivesEachPixelItsGrey) {
    const support::TempFolder folder;
    if (!RunTool(folder.prefix(), "gnuplot", {"--version"})) {
        GTEST_SKIP() << "gnuplot is not installed";
    }
    GreyPicture picture = {.width = 387, .height = 183, .pixels = {}};
    for (int i = 0; i < picture.width * picture.height; ++i) {
        constexpr float greys = 256;
        picture.pixels.push_back(
            static_cast<std::uint8_t>(greys * samples::EvenNoise(1, static_cast<std::uint64_t>(i))));
    }
    PictureWriter writer(folder.prefix());
    ASSERT_TRUE(writer.WritePng("picture.png", picture));
    const auto pixels = PixelsOf(folder, "picture.png");
    ASSERT_EQ(pixels.size(), 389U * 185U);
    int wrong = 0;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const auto index = (static_cast<std::size_t>(y) * 387) + static_cast<std::size_t>(x);
            const int grey = pixels.at({x + 1, picture.height - y});
            wrong += std::abs(grey - int{picture.pixels[index]}) > 1 ? 1 : 0;
        }
    }
    EXPECT_EQ(wrong, 0);
}

}  // namespace
