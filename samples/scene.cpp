// SPDX-License-Identifier: MIT
#include "samples/scene.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace samples {

namespace {

// The layout is given for the sensor's 3968 x 2646 pixels.
constexpr int kLayoutWidth = 3968;
constexpr int kLayoutHeight = 2646;
constexpr int kMargin = 130;
constexpr int kInnerWidth = kLayoutWidth - (2 * kMargin);

constexpr Srgb kBlackCard = {30, 30, 30};
constexpr Srgb kWhiteCard = {225, 225, 225};
constexpr LinearRgb kInk = {0.013F, 0.013F, 0.013F};

constexpr int kChartColumns = 6;
constexpr std::array<Srgb, 24> kChartColours = {{
    {115, 82, 68},   {194, 150, 130}, {98, 122, 157},  {87, 108, 67},   {133, 128, 177}, {103, 189, 170},
    {214, 126, 44},  {80, 91, 166},   {193, 90, 99},   {94, 60, 108},   {157, 188, 64},  {224, 163, 46},
    {56, 61, 150},   {70, 148, 73},   {175, 54, 60},   {231, 199, 31},  {187, 86, 149},  {8, 133, 161},
    {243, 243, 242}, {200, 200, 200}, {160, 160, 160}, {122, 122, 121}, {85, 85, 85},    {52, 52, 52},
}};

bool Crosses(const Patch& patch, int y) {
    return y >= patch.y && y < patch.y + patch.height;
}

std::span<LinearRgb> Across(const Patch& patch, std::span<LinearRgb> row) {
    return row.subspan(static_cast<std::size_t>(patch.x), static_cast<std::size_t>(patch.width));
}

void DrawFlat(const std::vector<Patch>& patches, int y, std::span<LinearRgb> row) {
    for (const Patch& patch : patches) {
        if (Crosses(patch, y)) {
            std::ranges::fill(Across(patch, row), ToLinear(patch.colour));
        }
    }
}

/// Mixes `share` of `over` with the rest of `under`.
LinearRgb Mix(const LinearRgb& under, const LinearRgb& over, float share) {
    LinearRgb mixed = {};
    for (std::size_t i = 0; i < mixed.size(); ++i) {
        mixed[i] = under[i] + ((over[i] - under[i]) * share);
    }
    return mixed;
}

/// A muted colour. `hue` runs from 0 to 1 around the circle: red, yellow, green, cyan, blue, magenta, red.
LinearRgb HueColour(float hue) {
    constexpr std::array<float, 3> kCentres = {0, 1 / 3.0F, 2 / 3.0F};
    constexpr float kMin = 45;
    constexpr float kMax = 215;
    Srgb colour = {};
    std::ranges::transform(kCentres, colour.begin(), [hue](float centre) {
        const float away = std::abs(hue - centre);
        const float around = std::min(away, 1 - away);                 // 0 to 1/2
        const float share = std::clamp(2 - (around * 6), 0.0F, 1.0F);  // 1 up to 1/6, 0 from 1/3 on
        const float smooth = share * share * (3 - (2 * share));
        return static_cast<std::uint8_t>(std::lround(kMin + ((kMax - kMin) * smooth)));
    });
    return ToLinear(colour);
}

}  // namespace

Scene::Scene(int width, int height, const Ground& ground)
    : width_(width), height_(height), ground_(ground), star_(), grey_ramp_(), hue_ramp_() {}

// The ground is lit from the upper left.
Scene::Scene(int width, int height)
    : Scene(width, height, {.x = 0.25F, .y = 0.2F, .brightest = 0.17F, .fall = 0.11F}) {
    PlaceChart();
    PlaceBars();
    PlaceWedge();
    PlaceGradients();
}

Scene Scene::GreySky(int width, int height) {
    return {width, height, {.x = 0.5F, .y = 0.5F, .brightest = 0.35F, .fall = 0.1F}};
}

Patch Scene::Scaled(int x, int y, int width, int height, Srgb colour) const {
    const int left = x * width_ / kLayoutWidth;
    const int top = y * height_ / kLayoutHeight;
    const int right = (x + width) * width_ / kLayoutWidth;
    const int bottom = (y + height) * height_ / kLayoutHeight;
    return {.x = left, .y = top, .width = right - left, .height = bottom - top, .colour = colour};
}

void Scene::PlaceChart() {
    constexpr int kSide = 324;
    constexpr int kGap = 44;
    constexpr int kStep = kSide + kGap;
    constexpr int kRows = static_cast<int>(kChartColours.size()) / kChartColumns;
    panels_.push_back(
        Scaled(kMargin, kMargin, (kStep * kChartColumns) + kGap, (kStep * kRows) + kGap, kBlackCard));
    for (int i = 0; i < static_cast<int>(kChartColours.size()); ++i) {
        const int x = kMargin + kGap + (kStep * (i % kChartColumns));
        const int y = kMargin + kGap + (kStep * (i / kChartColumns));
        chart_.push_back(Scaled(x, y, kSide, kSide, kChartColours.at(static_cast<std::size_t>(i))));
    }
}

void Scene::PlaceBars() {
    constexpr int kLeft = 2504;
    constexpr int kCardWidth = kLayoutWidth - kMargin - kLeft;
    constexpr int kCardHeight = 1516;
    panels_.push_back(Scaled(kLeft, kMargin, kCardWidth, kCardHeight, kWhiteCard));
    constexpr int kStarSide = 800;
    star_ = Scaled(kLeft + ((kCardWidth - kStarSide) / 2), kMargin + 40, kStarSide, kStarSide, {});

    struct Direction {
        float x;
        float y;
    };
    // Vertical, horizontal, 5 degrees off the vertical, diagonal.
    constexpr std::array<Direction, 4> kDirections = {
        {{1, 0}, {0, 1}, {0.9962F, 0.0872F}, {0.7071F, 0.7071F}}};
    constexpr std::array<int, 7> kPitches = {48, 32, 24, 16, 12, 8, 6};
    constexpr int kFieldWidth = 160;
    constexpr int kFieldHeight = 140;
    constexpr int kGap = 12;
    constexpr int kTop = kMargin + 880;
    constexpr int kInset =
        (kCardWidth - ((kFieldWidth + kGap) * static_cast<int>(kPitches.size())) + kGap) / 2;
    int y = kTop;
    for (const Direction& direction : kDirections) {
        int x = kLeft + kInset;
        for (const int pitch : kPitches) {
            const float scaled = static_cast<float>(pitch * width_) / static_cast<float>(kLayoutWidth);
            bars_.push_back(
                {Scaled(x, y, kFieldWidth, kFieldHeight, {}), {scaled, direction.x, direction.y}});
            x += kFieldWidth + kGap;
        }
        y += kFieldHeight + kGap;
    }
}

void Scene::PlaceWedge() {
    constexpr int kSteps = 21;
    constexpr int kTop = 1776;
    constexpr int kStepHeight = 280;
    for (int i = 0; i < kSteps; ++i) {
        const int left = kInnerWidth * i / kSteps;
        const int right = kInnerWidth * (i + 1) / kSteps;
        const auto grey = static_cast<std::uint8_t>(255 * i / (kSteps - 1));
        wedge_.push_back(Scaled(kMargin + left, kTop, right - left, kStepHeight, {grey, grey, grey}));
    }
}

void Scene::PlaceGradients() {
    constexpr int kTop = 2076;
    constexpr int kGreyHeight = 170;
    constexpr int kHueHeight = 250;
    constexpr int kGap = 20;
    grey_ramp_ = Scaled(kMargin, kTop, kInnerWidth, kGreyHeight, {});
    hue_ramp_ = Scaled(kMargin, kTop + kGreyHeight + kGap, kInnerWidth, kHueHeight, {});
    for (int i = 0; i < grey_ramp_.width; ++i) {
        const float share = (static_cast<float>(i) + 0.5F) / static_cast<float>(grey_ramp_.width);
        const float light = share * share * (0.3F + (0.7F * share));  // roughly even steps to the eye
        grey_ramp_columns_.push_back({light, light, light});
        hue_ramp_columns_.push_back(HueColour(share));
    }
}

void Scene::DrawRow(int y, std::span<LinearRgb> row) const {
    DrawGround(y, row);
    DrawFlat(panels_, y, row);
    DrawFlat(chart_, y, row);
    DrawFlat(wedge_, y, row);
    DrawGradients(y, row);
    DrawStar(y, row);
    DrawBars(y, row);
}

void Scene::DrawGround(int y, std::span<LinearRgb> row) const {
    const float down = (static_cast<float>(y) / static_cast<float>(height_)) - ground_.y;
    for (int x = 0; x < width_; ++x) {
        const float right = (static_cast<float>(x) / static_cast<float>(width_)) - ground_.x;
        const float light = ground_.brightest - (ground_.fall * ((right * right) + (down * down)));
        row[static_cast<std::size_t>(x)] = {light, light, light};
    }
}

void Scene::DrawGradients(int y, std::span<LinearRgb> row) const {
    if (Crosses(grey_ramp_, y)) {
        std::ranges::copy(grey_ramp_columns_, Across(grey_ramp_, row).begin());
    }
    if (Crosses(hue_ramp_, y)) {
        constexpr float kFall = 0.85F;
        const float share = static_cast<float>(y - hue_ramp_.y) / static_cast<float>(hue_ramp_.height);
        std::ranges::transform(hue_ramp_columns_, Across(hue_ramp_, row).begin(),
                               [share](const LinearRgb& colour) { return Mix(colour, kInk, kFall * share); });
    }
}

void Scene::DrawStar(int y, std::span<LinearRgb> row) const {
    if (!Crosses(star_, y)) {
        return;
    }
    const float radius = static_cast<float>(std::min(star_.width, star_.height)) / 2;
    const float centre_x = static_cast<float>(star_.width - 1) / 2;
    const float down = static_cast<float>(y - star_.y) - (static_cast<float>(star_.height - 1) / 2);
    float x = 0;
    for (LinearRgb& pixel : Across(star_, row)) {
        pixel = Mix(pixel, kInk, StarCoverage(radius, x - centre_x, down));
        x += 1;
    }
}

void Scene::DrawBars(int y, std::span<LinearRgb> row) const {
    for (const BarField& field : bars_) {
        if (!Crosses(field.area, y)) {
            continue;
        }
        float x = 0;
        for (LinearRgb& pixel : Across(field.area, row)) {
            pixel = Mix(pixel, kInk, BarCoverage(field.bars, x, static_cast<float>(y - field.area.y)));
            x += 1;
        }
    }
}

RgbImage SrgbImage(const Scene& scene) {
    RgbImage image = {.width = scene.Width(), .height = scene.Height()};
    image.samples.reserve(3UL * static_cast<std::size_t>(image.width) *
                          static_cast<std::size_t>(image.height));
    std::vector<LinearRgb> row(static_cast<std::size_t>(image.width));
    for (int y = 0; y < image.height; ++y) {
        scene.DrawRow(y, row);
        for (const LinearRgb& pixel : row) {
            const Srgb colour = ToSrgb(pixel);
            image.samples.insert(image.samples.end(), colour.begin(), colour.end());
        }
    }
    return image;
}

}  // namespace samples
