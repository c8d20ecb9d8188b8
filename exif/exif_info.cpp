// SPDX-License-Identifier: MIT
#include "exif/exif_info.h"

EXIFInfo::EXIFInfo() {
    clear();
}

void EXIFInfo::clear() {
    LittleEndian = false;

    for (std::string* text : {&ImageDescription, &Make, &Model, &Software, &DateTime, &DateTimeOriginal,
                              &DateTimeDigitized, &SubSecTimeOriginal, &Copyright, &LensCodeBits}) {
        text->clear();
    }
    ExifVersion.clear();
    MakerNote.clear();

    for (std::uint16_t* number :
         {&Orientation, &BitsPerSample, &ISOSpeedRatings, &ExposureProgram, &FocalLengthIn35mmFilm, &Flash,
          &MeteringMode, &LightSource, &FileSource, &SceneType, &SceneCaptureType}) {
        *number = 0;
    }
    PixelXDimension = 0;
    PixelYDimension = 0;

    for (Rational* rational :
         {&ExposureTime, &FNumber, &ShutterSpeedValue, &SubjectDistance, &FocalLength, &DigitalZoomRatio}) {
        *rational = kClearedRational;
    }
    ExposureBiasValue = kClearedSRational;
}
