// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_SENSORFIXTOOLS_H
#define VELMARCON_SENSOR_SENSORFIXTOOLS_H

#include <cstdint>
#include <vector>

#include "base/pixel.h"

class ReadInputData;
class sensdb;

/// Corrects the sensor's own faults. Images are row-major 14-bit pixels and are corrected in place. The width
/// tells which frame an image has: 3968 columns are the whole sensor, to which the database refers, and 3920
/// columns the cropped frame of a camera DNG.
class sensorfixtools {
  public:
    /// Seeds the C library's random sequence, from which the dither takes its seeds.
    sensorfixtools();

    /// Repairs the listed columns of camera `serial`, or paints them white with `test`. Ignores pixels
    /// outside the image. Returns 0, or 1 at a group whose two column values differ; that group and those
    /// after it are not repaired.
    int fixPixelLine(unsigned int serial, std::vector<Pixel>* pixels, int width, int height, sensdb* db,
                     bool test);

    /// The same for the record's image and camera.
    int fixPixelLine(ReadInputData* image, sensdb* db, bool test);

    /// Replaces `pixel`, at `column` and `row` of an image of the given size, with a mean of its neighbours
    /// of the same colour. Returns 0.
    int interp(Pixel* pixel, int column, int row, int width, int height);

    /// Subtracts the dark level of each column of camera `serial`, scaled to the ISO speed `iso`. Without
    /// `estimate`, the subtraction is dithered, and an image of another width is left unchanged. With
    /// `estimate`, it is not dithered, and row offsets estimated from the image are subtracted as well. An
    /// image with more columns than the camera has levels is left unchanged. `count` is `width` x `height`.
    /// Returns 0.
    int fixBlackLevels(unsigned int serial, std::vector<Pixel>* pixels, std::uint16_t iso, int width,
                       int height, int count, sensdb* db, bool estimate);

    /// The same for the record's image and camera.
    int fixBlackLevels(ReadInputData* image, sensdb* db, bool estimate);
};

#endif  // VELMARCON_SENSOR_SENSORFIXTOOLS_H
