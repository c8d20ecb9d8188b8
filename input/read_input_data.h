// SPDX-License-Identifier: MIT
#ifndef VELMARCON_INPUT_READ_INPUT_DATA_H
#define VELMARCON_INPUT_READ_INPUT_DATA_H

#include <cstdint>
#include <string>
#include <vector>

#include "base/pixel.h"
#include "exif/exif_info.h"
#include "exif/lensdb.h"

/// One image being converted: the names of its files, the sensor data of `<base>.RAW` (minus the dark frame
/// `<base>.BIA` if requested), a small grey preview, and the shooting data of `<base>.JPG`. Owns all of it.
/// Operations return 0 or an ErrorCode; after a failure the record keeps what was loaded so far.
class ReadInputData {
  public:
    /// Reads the pair `base`.JPG and `base`.RAW from `folder` (which ends in a separator, or is empty), the
    /// JPEG first.
    [[nodiscard]] int ProcessFile(const std::string& folder, const std::string& base, bool verbose,
                                  bool subtractBia);

    /// Fills Exif from the JPEG.
    [[nodiscard]] int LoadJPGExif();

    /// Reads the RAW file, and the dark frame if SubtractBia is set, and extracts the image. Words missing
    /// from a short file count as 0.
    [[nodiscard]] int LoadRawFile();

    /// Turns the words of the RAW file in ImageData into the cropped image, in place: fills Width, Height,
    /// ImageSize, ImageData and the preview, and reads and subtracts the dark frame, row by row. On entry
    /// ImageSize is the RAW file's length in bytes; a length below 10499328 (one byte per pixel) is damaged.
    [[nodiscard]] int ExtractRawImage();

    /// Prints a summary of Exif, 25 lines, to standard output. For diagnosis only; a run does not call it.
    void PrintExifData() const;

    /// Words of some rows of the dark frame, see DarkRows. The vector may be moved on as ImageData's.
    std::vector<Pixel> BiaData;
    bool Verbose = false;  ///< print progress
    bool SubtractBia = false;
    /// First the words of the RAW file, then the image: Width x Height 14-bit values, row by row. The vector
    /// may be moved from one record to the next to reuse its memory; its old content does not matter.
    std::vector<Pixel> ImageData;
    std::vector<std::uint8_t> PreviewData;  ///< 320 x 240 pixels of 3 equal bytes, row by row
    std::int32_t ImageSize = 0;    ///< first the RAW file's length in bytes, then the number of pixels
    std::int32_t PreviewSize = 0;  ///< bytes
    std::int32_t Width = 0;        ///< pixels
    std::int32_t Height = 0;       ///< pixels
    std::string Folder;            ///< precedes every file name
    std::string RawFileName;
    std::string BiaFileName;
    std::string JpgFileName;
    std::string OutputLabel;  ///< the name with which an error of a repair is reported; always empty, because
                              ///< nothing sets it
    EXIFInfo Exif;
    lensdb Lens;
};

#endif  // VELMARCON_INPUT_READ_INPUT_DATA_H
