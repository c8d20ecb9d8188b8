// SPDX-License-Identifier: MIT
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>

#include "base/truncate.h"
#include "input/read_input_data.h"
#include "tiff/rational.h"

namespace {

/// The quotient in single precision, widened for printf; a zero denominator gives infinity or NaN.
double Quotient(SRational value) {
    return static_cast<double>(static_cast<float>(value.numerator) / static_cast<float>(value.denominator));
}

double Quotient(Rational value) {
    return Quotient(AsSigned(value));
}

/// n for an exposure time of 1/n s, rounded. A numerator of 0 prints as the lowest integer, which processors
/// return when they convert an infinite value.
std::int32_t ExposureTimeFraction(SRational seconds) {
    const double fraction = 1.0 / seconds.numerator * seconds.denominator + 0.5;
    return std::isfinite(fraction) ? Truncate<std::int32_t>(fraction)
                                   : std::numeric_limits<std::int32_t>::min();
}

}  // namespace

void ReadInputData::PrintExifData() const {
    // Texts end at their first NUL.
    std::printf("Camera make       : %s\n", Exif.Make.c_str());
    std::printf("Camera model      : %s\n", Exif.Model.c_str());
    std::printf("Software          : %s\n", Exif.Software.c_str());
    std::printf("Bits per sample   : %d\n", Exif.BitsPerSample);
    std::printf("Image width       : %d\n", static_cast<std::int32_t>(Exif.PixelXDimension));
    std::printf("Image height      : %d\n", static_cast<std::int32_t>(Exif.PixelYDimension));
    std::printf("Image description : %s\n", Exif.ImageDescription.c_str());
    std::printf("Image orientation : %d\n", Exif.Orientation);
    std::printf("Image copyright   : %s\n", Exif.Copyright.c_str());
    std::printf("Image date/time   : %s\n", Exif.DateTime.c_str());
    std::printf("Original date/time: %s\n", Exif.DateTimeOriginal.c_str());
    std::printf("Digitize date/time: %s\n", Exif.DateTimeDigitized.c_str());
    std::printf("Subsecond time    : %s\n", Exif.SubSecTimeOriginal.c_str());
    std::printf("Exposure time     : 1/%d s\n", ExposureTimeFraction(AsSigned(Exif.ExposureTime)));
    std::printf("Max Aperture Value: %f\n", Quotient(Exif.MaxApertureValue));
    std::printf("White Balance     : %d\n", Exif.WhiteBalance);
    std::printf("Unique ID         : %s\n", Exif.ImageUniqueID.c_str());
    std::printf("F-stop            : f/%.1f\n", Quotient(Exif.FNumber));
    std::printf("ISO speed         : %d\n", Exif.ISOSpeedRatings);
    std::printf("Subject distance  : %f m\n", Quotient(Exif.SubjectDistance));
    std::printf("Exposure bias     : %f EV\n", Quotient(Exif.ExposureBiasValue));
    std::printf("Flash used?       : %d\n", Exif.Flash);
    std::printf("Metering mode     : %d\n", Exif.MeteringMode);
    std::printf("Lens focal length : %f mm\n", Quotient(Exif.FocalLength));
    std::printf("35mm focal length : %u mm\n", static_cast<unsigned int>(Exif.FocalLengthIn35mmFilm));
}
