// SPDX-License-Identifier: MIT
#include <array>
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "input/read_input_data.h"
#include "tests/support/capture_stdout.h"

namespace {

std::string Summary(const EXIFInfo& exif) {
    ReadInputData record;
    record.Exif = exif;
    return support::CaptureStdout([&] { record.PrintExifData(); });
}

/// Line `number` of the summary, counted from 1, without its line end.
std::string Line(const EXIFInfo& exif, int number) {
    const std::string text = Summary(exif);
    std::size_t begin = 0;
    for (int i = 1; i < number; ++i) {
        begin = text.find('\n', begin) + 1;
    }
    return text.substr(begin, text.find('\n', begin) - begin);
}

TEST(ExifSummary, PrintsTwentyFiveLines) {
    EXIFInfo exif;
    exif.Make = std::string("Leica Camera AG\0", 16);
    exif.Model = "M8 Digital Camera";
    exif.Software = "1.092";
    exif.BitsPerSample = 8;
    exif.PixelXDimension = 3936;
    exif.PixelYDimension = 2630;
    exif.ImageDescription = "a picture";
    exif.Orientation = 6;
    exif.Copyright = "me";
    exif.DateTime = "2007:08:02 22:13:49";
    exif.DateTimeOriginal = "2007:08:02 22:13:48";
    exif.DateTimeDigitized = "2007:08:02 22:13:47";
    exif.SubSecTimeOriginal = "12";
    exif.ExposureTime = {10, 2500};
    exif.MaxApertureValue = {131072, 65536};
    exif.WhiteBalance = 1;
    exif.ImageUniqueID = "0001F";
    exif.FNumber = {28, 10};
    exif.ISOSpeedRatings = 640;
    exif.SubjectDistance = {5, 4};
    exif.ExposureBiasValue = {-1, 3};
    exif.Flash = 16;
    exif.MeteringMode = 2;
    exif.FocalLength = {50000, 1000};
    exif.FocalLengthIn35mmFilm = 67;
    EXPECT_EQ(Summary(exif),
              "Camera make       : Leica Camera AG\n"
              "Camera model      : M8 Digital Camera\n"
              "Software          : 1.092\n"
              "Bits per sample   : 8\n"
              "Image width       : 3936\n"
              "Image height      : 2630\n"
              "Image description : a picture\n"
              "Image orientation : 6\n"
              "Image copyright   : me\n"
              "Image date/time   : 2007:08:02 22:13:49\n"
              "Original date/time: 2007:08:02 22:13:48\n"
              "Digitize date/time: 2007:08:02 22:13:47\n"
              "Subsecond time    : 12\n"
              "Exposure time     : 1/250 s\n"
              "Max Aperture Value: 2.000000\n"
              "White Balance     : 1\n"
              "Unique ID         : 0001F\n"
              "F-stop            : f/2.8\n"
              "ISO speed         : 640\n"
              "Subject distance  : 1.250000 m\n"
              "Exposure bias     : -0.333333 EV\n"
              "Flash used?       : 16\n"
              "Metering mode     : 2\n"
              "Lens focal length : 50.000000 mm\n"
              "35mm focal length : 67 mm\n");
}

TEST(ExifSummary, AnEmptyRecordPrintsEmptyTextsAndZeros) {
    std::string text = Summary({});
    // The sign of NaN depends on the processor.
    if (const auto signed_nan = text.find("-nan"); signed_nan != std::string::npos) {
        text.erase(signed_nan, 1);
    }
    EXPECT_EQ(text,
              "Camera make       : \n"
              "Camera model      : \n"
              "Software          : \n"
              "Bits per sample   : 0\n"
              "Image width       : 0\n"
              "Image height      : 0\n"
              "Image description : \n"
              "Image orientation : 0\n"
              "Image copyright   : \n"
              "Image date/time   : \n"
              "Original date/time: \n"
              "Digitize date/time: \n"
              "Subsecond time    : \n"
              "Exposure time     : 1/-2147483648 s\n"
              "Max Aperture Value: nan\n"
              "White Balance     : 0\n"
              "Unique ID         : \n"
              "F-stop            : f/0.0\n"
              "ISO speed         : 0\n"
              "Subject distance  : 0.000000 m\n"
              "Exposure bias     : 0.000000 EV\n"
              "Flash used?       : 0\n"
              "Metering mode     : 0\n"
              "Lens focal length : 0.000000 mm\n"
              "35mm focal length : 0 mm\n");
}

struct Time {
    Rational seconds;
    std::string line;
};

const std::array<Time, 10> kTimes = {{
    {{1, 250}, "Exposure time     : 1/250 s"},
    {{10, 2500}, "Exposure time     : 1/250 s"},
    {{1, 6000}, "Exposure time     : 1/6000 s"},
    {{3, 1000}, "Exposure time     : 1/333 s"},
    {{3, 2000}, "Exposure time     : 1/667 s"},
    {{8, 1}, "Exposure time     : 1/0 s"},
    {{5, 0}, "Exposure time     : 1/0 s"},
    {{0, 1}, "Exposure time     : 1/-2147483648 s"},
    {{1, 0x7FFFFFFF}, "Exposure time     : 1/2147483647 s"},
    {{0xFFFFFFFF, 2}, "Exposure time     : 1/-1 s"},  // -1/2: -2 + 0.5, cut toward zero
}};

TEST(ExifSummary, TheExposureTimeIsARoundedFraction) {
    for (const auto& [seconds, line] : kTimes) {
        EXIFInfo exif;
        exif.ExposureTime = seconds;
        EXPECT_EQ(Line(exif, 14), line) << seconds.numerator << "/" << seconds.denominator;
    }
}

TEST(ExifSummary, RationalsAreTakenAsSigned) {
    EXIFInfo exif;
    exif.SubjectDistance = {0xFFFFFFFF, 2};
    exif.PixelXDimension = 0xFFFFFFFF;
    EXPECT_EQ(Line(exif, 20), "Subject distance  : -0.500000 m");
    EXPECT_EQ(Line(exif, 5), "Image width       : -1");
}

TEST(ExifSummary, QuotientsHaveSinglePrecision) {
    EXIFInfo exif;
    exif.FocalLength = {1, 10};
    exif.SubjectDistance = {16777217, 1};
    EXPECT_EQ(Line(exif, 24), "Lens focal length : 0.100000 mm");
    EXPECT_EQ(Line(exif, 20), "Subject distance  : 16777216.000000 m");
}

TEST(ExifSummary, AZeroDenominatorPrintsInfinity) {
    EXIFInfo exif;
    exif.FNumber = {28, 0};
    exif.ExposureBiasValue = {-1, 0};
    EXPECT_EQ(Line(exif, 18), "F-stop            : f/inf");
    EXPECT_EQ(Line(exif, 21), "Exposure bias     : -inf EV");
}

TEST(ExifSummary, TextsEndAtTheirFirstNul) {
    EXIFInfo exif;
    exif.Make = std::string("a\0b", 3);
    EXPECT_EQ(Line(exif, 1), "Camera make       : a");
    EXPECT_EQ(Line(exif, 2), "Camera model      : ");
}

}  // namespace
