// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_SCENE_H
#define VELMARCON_SAMPLES_SCENE_H

#include "samples/rgb_image.h"

#include <span>
#include <vector>

namespace samples {

/// A rectangle of one colour; all numbers in pixels, (x, y) is its upper left pixel.
struct Patch {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    Srgb colour = {};
};

/// The test scene: a chart of 24 colours, a grey wedge, smooth gradients and resolution bars on a grey
/// ground. It is drawn to any size; positions scale with it.
class Scene {
  public:
    /// `width` and `height` in pixels, at least 1.
    Scene(int width, int height);

    int Width() const { return width_; }
    int Height() const { return height_; }

    /// The 24 chart patches, row by row from the upper left; the last row is the neutral one, white to black.
    const std::vector<Patch>& ChartPatches() const { return chart_; }
    /// The steps of the grey wedge, black to white.
    const std::vector<Patch>& WedgePatches() const { return wedge_; }

    /// Draws row `y` (0 to height - 1) into `row`, which must hold Width() pixels.
    void DrawRow(int y, std::span<LinearRgb> row) const;

  private:
    int width_;
    int height_;
    std::vector<Patch> chart_;
    std::vector<Patch> wedge_;
};

/// The scene as a viewer shows it.
RgbImage SrgbImage(const Scene& scene);

}  // namespace samples

#endif  // VELMARCON_SAMPLES_SCENE_H
