// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_SENSORFIXTOOLS_H
#define VELMARCON_SENSOR_SENSORFIXTOOLS_H

#include <cstdint>
#include <vector>

class ReadInputData;
class sensdb;

/// The corrections of the sensor's own faults. Images are row-major 14-bit pixels, corrected in place. Two
/// frames are known by their width: the whole sensor's of 3968 columns, for which the database is made, and
/// the camera DNG's cropped one of 3920.
class sensorfixtools {
  public:
    /// Seeds the C library's random sequence, from which the dither takes its seeds.
    sensorfixtools();

    /// Repairs the listed columns of camera `serial`, or paints them white with `test`. Pixels outside the
    /// image are passed over. Returns 0, or 1 at a group whose two column values differ: it and the groups
    /// after it are left.
    int fixPixelLine(unsigned int serial, std::vector<unsigned short>* pixels, int width, int height,
                     sensdb* db, bool test);

    /// The same for the record's image and camera.
    int fixPixelLine(ReadInputData* image, sensdb* db, bool test);

    /// Replaces `pixel`, which lies at `column`, `row` of an image of the given size, by what its neighbours
    /// of the same colour suggest. Returns 0.
    int interp(unsigned short* pixel, int column, int row, int width, int height);

    /// Subtracts the dark level of each column of camera `serial`, scaled to the ISO speed: dithered; or with
    /// `estimate` undithered and together with row offsets estimated from the image. `count` is `width` x
    /// `height`. An image of another width is left alone without `estimate`, as is any with more columns than
    /// the camera has levels. Returns 0.
    int fixBlackLevels(unsigned int serial, std::vector<unsigned short>* pixels, unsigned short iso,
                       int width, int height, int count, sensdb* db, bool estimate);

    /// The same for the record's image and camera.
    int fixBlackLevels(ReadInputData* image, sensdb* db, bool estimate);
};

#endif  // VELMARCON_SENSOR_SENSORFIXTOOLS_H
