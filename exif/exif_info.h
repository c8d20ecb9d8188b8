// SPDX-License-Identifier: MIT
#ifndef VELMARCON_EXIF_EXIF_INFO_H
#define VELMARCON_EXIF_EXIF_INFO_H

#include <cstdint>
#include <string>
#include <vector>

#include "tiff/rational.h"

/// The shooting data of one picture, read from the EXIF block of the camera's JPEG (Exif 2.3) and the maker
/// note in it. Texts are as long as their EXIF component count says, including a terminating NUL.
class EXIFInfo {
  public:
    /// Results of the parser; 0 is success.
    static constexpr int kNotAJpeg = 1982;
    static constexpr int kNoExif = 1983;
    static constexpr int kUnknownByteOrder = 1984;
    static constexpr int kCorruptExif = 1985;

    /// Clears everything except MaxApertureValue, WhiteBalance, ImageUniqueID and the numbers of the maker
    /// note, which deliberately keep what an earlier parse left.
    void clear();

    /// Reads a whole JPEG file of `len` bytes in memory. Returns 0 or one of the results above. A file that
    /// does not begin with SOI and end with EOI leaves the record unchanged; after a later error, the values
    /// decoded before it stay.
    [[nodiscard]] int parseFrom(const unsigned char* buf, unsigned int len);
    [[nodiscard]] int parseFrom(const std::string& data);

    /// Reads the payload of an APP1 segment, from "Exif" on. Values that lie outside `buf` are left out.
    [[nodiscard]] int parseFromEXIFSegment(const unsigned char* buf, unsigned int len);

    /// Decodes MakerNote into the fields of the maker note below. Always returns 0; values that lie outside
    /// the note are skipped.
    int ParseMakerNote();

    bool LittleEndian = false;  ///< byte order of the EXIF block

    // IFD0
    std::string ImageDescription;
    std::string Make;
    std::string Model;
    std::uint16_t Orientation = 0;
    std::uint16_t BitsPerSample = 0;
    std::string Software;
    std::string DateTime;

    // EXIF IFD, except Copyright, which is in IFD0
    std::string DateTimeOriginal;
    std::string DateTimeDigitized;
    std::string SubSecTimeOriginal;
    std::string Copyright;
    Rational ExposureTime = kClearedRational;  ///< seconds; the three fastest have their nominal values
    Rational FNumber = kClearedRational;
    std::uint16_t ISOSpeedRatings = 0;
    std::uint16_t ExposureProgram = 0;
    std::vector<std::uint8_t> ExifVersion;
    Rational ShutterSpeedValue = kClearedRational;    ///< APEX
    SRational ExposureBiasValue = kClearedSRational;  ///< EV in thirds
    Rational SubjectDistance = kClearedRational;      ///< metres
    Rational FocalLength = kClearedRational;          ///< millimetres
    Rational DigitalZoomRatio = kClearedRational;
    std::uint16_t FocalLengthIn35mmFilm = 0;  ///< millimetres
    std::uint16_t Flash = 0;
    Rational MaxApertureValue;  ///< APEX
    std::uint16_t WhiteBalance = 0;
    std::string ImageUniqueID;
    std::uint16_t MeteringMode = 0;
    std::uint16_t LightSource = 0;
    std::uint16_t FileSource = 0;
    std::uint16_t SceneType = 0;
    std::uint16_t SceneCaptureType = 0;

    // Maker note
    std::uint32_t SerialNumber = 0;  ///< of the camera
    std::uint8_t LensCode = 0;       ///< 6 bits; 0 means that the camera saw no coded lens
    std::uint8_t FrameSelector = 0;  ///< 2 bits; the frame lines that the lens's bayonet selects
    std::string LensCodeBits;        ///< LensCode as six "0"/"1" characters, most significant first
    Rational Mn0311;                 ///< brightness seen by the external sensor, a pair of signed numbers
    Rational Mn0312;                 ///< light value measured through the lens, a pair of signed numbers
    Rational Mn0313;                 ///< approximate f-number
    Rational Mn0322;                 ///< white balance level, red
    Rational Mn0323;                 ///< white balance level, green
    Rational Mn0324;                 ///< white balance level, blue
    float Mn0322Ratio = 0;
    float Mn0323Ratio = 0;
    float Mn0324Ratio = 0;

    std::uint32_t PixelXDimension = 0;  ///< pixels, of the JPEG
    std::uint32_t PixelYDimension = 0;  ///< pixels, of the JPEG
    std::vector<std::uint8_t> MakerNote;
};

#endif  // VELMARCON_EXIF_EXIF_INFO_H
