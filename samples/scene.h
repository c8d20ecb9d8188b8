// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_SCENE_H
#define VELMARCON_SAMPLES_SCENE_H

#include <span>
#include <vector>

#include "samples/line_patterns.h"
#include "samples/rgb_image.h"

namespace samples {

/// A rectangle of one colour, in pixels; (x, y) is its upper left pixel.
struct Patch {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    Srgb colour = {};
};

/// The test scene: a chart of 24 colours, a grey wedge, smooth gradients, a star and resolution bars on a
/// grey ground. It can be drawn at any size; positions scale with it.
class Scene {
  public:
    /// `width` and `height` in pixels, at least 1.
    Scene(int width, int height);

    /// An even grey sky, a little darker towards the corners, without anything else of the scene.
    static Scene GreySky(int width, int height);

    int Width() const { return width_; }
    int Height() const { return height_; }

    /// The 24 chart patches, row by row from the upper left; the last row is the neutral one, white to black.
    const std::vector<Patch>& ChartPatches() const { return chart_; }
    /// The 21 steps of the grey wedge, black to white, side by side without gaps.
    const std::vector<Patch>& WedgePatches() const { return wedge_; }

    /// Draws row `y` (0 to height - 1) into `row`, which must hold Width() pixels.
    void DrawRow(int y, std::span<LinearRgb> row) const;

  private:
    struct BarField {
        Patch area;
        Bars bars;
    };

    /// The light of the ground, linear, 0 to 1: brightest at (x, y) and falling with the square of the
    /// distance. Positions are fractions of the scene's width and height.
    struct Ground {
        float x;
        float y;
        float brightest;
        float fall;
    };

    Scene(int width, int height, const Ground& ground);

    Patch Scaled(int x, int y, int width, int height, Srgb colour) const;
    void PlaceChart();
    void PlaceWedge();
    void PlaceBars();
    void PlaceGradients();

    void DrawGround(int y, std::span<LinearRgb> row) const;
    void DrawGradients(int y, std::span<LinearRgb> row) const;
    void DrawStar(int y, std::span<LinearRgb> row) const;
    void DrawBars(int y, std::span<LinearRgb> row) const;

    int width_;
    int height_;
    Ground ground_;
    std::vector<Patch> panels_;
    std::vector<Patch> chart_;
    std::vector<Patch> wedge_;
    Patch star_;
    std::vector<BarField> bars_;
    Patch grey_ramp_;
    std::vector<LinearRgb> grey_ramp_columns_;
    Patch hue_ramp_;
    std::vector<LinearRgb> hue_ramp_columns_;
};

/// The scene as a viewer shows it.
RgbImage SrgbImage(const Scene& scene);

}  // namespace samples

#endif  // VELMARCON_SAMPLES_SCENE_H
