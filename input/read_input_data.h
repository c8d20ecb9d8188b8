// SPDX-License-Identifier: MIT
#ifndef VELMARCON_INPUT_READ_INPUT_DATA_H
#define VELMARCON_INPUT_READ_INPUT_DATA_H

#include <cstdint>
#include <string>
#include <vector>

#include "exif/exif_info.h"
#include "exif/lensdb.h"

/// One image being converted: the names of its files, the sensor data of `<base>.RAW`
/// (with the dark frame `<base>.BIA` subtracted when asked for), a small grey
/// preview, and the shooting data of `<base>.JPG`. Owns all of it. Operations return
/// 0 or an ErrorCode; after a failure the record keeps what was loaded so far.
class ReadInputData {
  public:
    /// Reads the pair `base`.JPG, `base`.RAW of `folder` (which
    /// ends in a separator, or is empty), the JPEG first.
    [[nodiscard]] int ProcessFile(const std::string& folder, const std::string& base, bool verbose,
                                  bool subtractBia);

    /// Fills Exif from the JPEG.
    [[nodiscard]] int LoadJPGExif();

    /// Reads the RAW file, and the dark frame when SubtractBia is set, and extracts the image. What a short
    /// file does not hold counts as 0.
    [[nodiscard]] int LoadRawFile();

    /// Turns the words of the RAW file in ImageData into the cropped image, in place: fills Width, Height,
    /// ImageSize, ImageData and the preview, and subtracts the dark frame. On entry ImageSize is the RAW
    /// file's length in bytes; one below 10499328 (one byte a pixel) is damaged.
    [[nodiscard]] int ExtractRawImage();

    /// Prints a summary of Exif, 25 lines, to standard output. For diagnosis; nothing in a run calls it.
    void PrintExifData() const;

    std::vector<std::uint16_t> BiaData;  ///< words of the dark frame, laid out like the RAW file's
    bool Verbose = false;                ///< print progress
    bool SubtractBia = false;
    /// First the words of the RAW file, then the image: Width x Height 14-bit values, row by row. May be
    /// handed on from one record to the next for its memory: what it held does not matter.
    std::vector<std::uint16_t> ImageData;
    std::vector<std::uint8_t> PreviewData;  ///< 320 x 240 pixels of 3 equal bytes, row by row
    std::int32_t ImageSize = 0;    ///< first the RAW file's length in bytes, then the number of pixels
    std::int32_t PreviewSize = 0;  ///< bytes
    std::int32_t Width = 0;        ///< pixels
    std::int32_t Height = 0;       ///< pixels
    std::string Folder;            ///< goes in front of every file name
    std::string RawFileName;
    std::string BiaFileName;
    std::string JpgFileName;
    std::string OutputLabel;  ///< the name by which a repair is reported: none, nothing sets it
    EXIFInfo Exif;
    lensdb Lens;
};

#endif  // VELMARCON_INPUT_READ_INPUT_DATA_H
