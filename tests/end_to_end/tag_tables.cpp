// SPDX-License-Identifier: MIT
#include "tests/end_to_end/tag_tables.h"

#include "samples/camera_jpeg.h"
#include "samples/shot.h"
#include "tiff/tags.h"

namespace end_to_end {

samples::ExifBlock DistinctExif(std::uint8_t lens_code) {
    samples::Shot shot;
    shot.model = "M8.2 Digital Camera";
    shot.orientation = 6;
    shot.date_time_digitized = "2007:08:03 01:02:03";
    shot.exposure_time = {166, 1000000};
    shot.exposure_program = 3;
    shot.iso = 640;
    shot.metering_mode = 5;
    shot.light_source = 10;
    shot.flash = 1;
    shot.focal_length = {28000, 1000};
    shot.white_balance = 1;
    shot.digital_zoom = {3, 2};
    shot.focal_length_35mm = 0;
    shot.scene_capture_type = 2;
    shot.lens_code = lens_code;
    shot.external_light = {40000, 65536};
    shot.measured_light = {-50000, 65536};
    samples::ExifBlock block = samples::CameraExif(shot);
    samples::Set(block.exif, samples::Rationals(tag::kShutterSpeedValue, {{12, 5}}));
    samples::Set(block.exif, samples::Rationals(tag::kExposureBiasValue, {{2, 3}}));
    // The camera gives these two tags a type that the program ignores.
    samples::Set(block.exif, samples::Short(tag::kFileSource, 3));
    samples::Set(block.exif, samples::Short(tag::kSceneType, 1));
    return block;
}

TagTexts RawImageTags() {
    return {
        {254, "int32u[1] 0"},            // NewSubFileType
        {256, "int32u[1] 3968"},         // ImageWidth
        {257, "int32u[1] 2646"},         // ImageLength
        {258, "int16u[1] 16"},           // BitsPerSample
        {262, "int16u[1] 32803"},        // PhotometricInterpretation
        {277, "int16u[1] 1"},            // SamplesPerPixel
        {278, "int32u[1] 2646"},         // RowsPerStrip
        {279, "int32u[1] 20998656"},     // StripByteCounts
        {282, "rational64u[1] 300/1"},   // XResolution
        {283, "rational64u[1] 300/1"},   // YResolution
        {33421, "int16u[2] 2 2"},        // CFARepeatPatternDim
        {33422, "int8u[4] 0 1 1 2"},     // CFAPattern
        {50719, "int16u[2] 2 2"},        // DefaultCropOrigin
        {50720, "int16u[2] 3964 2642"},  // DefaultCropSize
        {50733, "int32u[1] 500"},        // BayerGreenSplit
        {50738, "rational64u[1] 0/1"},   // AntiAliasStrength
    };
}

TagTexts StripTags() {
    return {
        {259, "int16u[1] 1"},  // Compression
        {284, "int16u[1] 1"},  // PlanarConfiguration
        {296, "int16u[1] 2"},  // ResolutionUnit
    };
}

TagTexts PreviewTags() {
    return {
        {254, "int32u[1] 1"},          // NewSubFileType
        {256, "int32u[1] 320"},        // ImageWidth
        {257, "int32u[1] 240"},        // ImageLength
        {258, "int16u[3] 8 8 8"},      // BitsPerSample
        {262, "int16u[1] 2"},          // PhotometricInterpretation
        {277, "int16u[1] 3"},          // SamplesPerPixel
        {278, "int32u[1] 240"},        // RowsPerStrip
        {279, "int32u[1] 230400"},     // StripByteCounts
        {282, "rational64u[1] 72/1"},  // XResolution
        {283, "rational64u[1] 72/1"},  // YResolution
        {330, "int32u[1] -->"},        // SubIFDs
    };
}

TagTexts MainTags() {
    constexpr const char* identity = "rational64s[9] 1/1 0/1 0/1 0/1 1/1 0/1 0/1 0/1 1/1";
    return {
        {271, "string[16] Leica Camera AG"},        // Make
        {272, "string[18] M8 Digital Camera"},      // Model
        {274, "int16u[1] 6"},                       // Orientation
        {305, "string[6] 1.092"},                   // Software
        {315, "string[1]"},                         // Artist
        {33432, "string[1]"},                       // Copyright
        {34665, "int32u[1] -->"},                   // ExifIFD
        {34859, "int16u[1] 0"},                     // SelfTimerMode
        {36867, "string[20] 2007:08:02 22:13:49"},  // DateTimeOriginal
        {37390, "rational64u[1] 3729/1"},           // FocalPlaneXResolution
        {37391, "rational64u[1] 3764/1"},           // FocalPlaneYResolution
        {37392, "int16u[1] 2"},                     // FocalPlaneResolutionUnit
        {37398, "int8u[4] 0 0 0 1"},                // TIFF/EPStandardID
        {50706, "int8u[4] 1 4 0 0"},                // DNGVersion
        {50708, "string[20] M8.2 Digital Camera"},  // UniqueCameraModel
        {50721,                                     // ColorMatrix1
         "rational64s[9] 625/597 -110/207 16/125 -138/319 761/625 112/463 -150/1693 229/926 179/250"},
        {50722,  // ColorMatrix2
         "rational64s[9] 307/400 -439/2000 -14/459 -293/500 2345/1661 187/1007 -97/400 115/287 544/827"},
        {50723, identity},                                              // CameraCalibration1
        {50724, identity},                                              // CameraCalibration2
        {50728, "rational64u[3] 16384/34488 16384/16384 16384/20567"},  // AsShotNeutral
        {50731, "rational64u[1] 1/1"},                                  // BaselineNoise
        {50732, "rational64u[1] 1/1"},                                  // BaselineSharpness
        {50735, "string[8] 3106091"},                                   // CameraSerialNumber
        {50741, "int16u[1] 1"},                                         // MakerNoteSafety
        {50778, "int16u[1] 17"},                                        // CalibrationIlluminant1
        {50779, "int16u[1] 21"},                                        // CalibrationIlluminant2
    };
}

TagTexts RawVariantTags() {
    return {
        {272, "string[21] M8RAW Digital Camera"},  // Model
        {50721,                                    // ColorMatrix1
         "rational64s[9] 107/125 -335/1647 -2/303 -53/125 34/25 73/250 -37/500 144/583 449/500"},
        {50722,  // ColorMatrix2
         "rational64s[9] 313/500 -59/579 -29/617 -210/563 229/200 193/1000 -72/511 59/200 621/1000"},
    };
}

TagTexts ExifTags() {
    return {
        {33434, "rational64u[1] 1/6000"},                        // ExposureTime
        {33437, "rational64u[1] 375082/65536"},                  // FNumber
        {34850, "int16u[1] 3"},                                  // ExposureProgram
        {34855, "int16u[1] 640"},                                // ISOSpeedRatings
        {36864, "undef[4] 0220"},                                // ExifVersion
        {36868, "string[20] 2007:08:03 01:02:03"},               // DateTimeDigitized
        {37377, "rational64s[1] 12/5"},                          // ShutterSpeedValue
        {37380, "rational64s[1] 2/3"},                           // ExposureBiasValue
        {37381, "rational64u[1] 131072/65536"},                  // MaxApertureValue
        {37383, "int16u[1] 5"},                                  // MeteringMode
        {37384, "int16u[1] 10"},                                 // LightSource
        {37385, "int16u[1] 1"},                                  // Flash
        {37386, "rational64u[1] 28000/1000"},                    // FocalLength
        {37500, "undef[292] -->"},                               // MakerNote
        {41728, "undef[1] 3"},                                   // FileSource
        {41729, "undef[1] 1"},                                   // SceneType
        {41987, "int16u[1] 1"},                                  // WhiteBalance
        {41988, "rational64u[1] 3/2"},                           // DigitalZoomRatio
        {41989, "int16u[1] 37"},                                 // FocalLengthIn35mmFilm
        {41990, "int16u[1] 2"},                                  // SceneCaptureType
        {42016, "string[33] 00000000000000000000000000000001"},  // ImageUniqueID
    };
}

TagTexts MakerNoteTags() {
    return {
        {0x0300, "int16u[1] 1"},                  // quality
        {0x0302, "int32u[1] 0"},                  // user profile
        {0x0303, "int32u[1] 3106091"},            // serial number
        {0x0304, "int16u[1] 0"},                  // white balance
        {0x0310, "int32u[1] 135"},                // lens: 4 x 33 + frame selector 3
        {0x0311, "rational64u[1] 40000/65536"},   // external light
        {0x0312, "rational64u[1] -50000/65536"},  // measured light
        {0x0313, "rational64u[1] 367002/65536"},  // approximate f-number
        {0x0320, "int32s[1] 27"},                 // temperature
        {0x0321, "int32u[1] 5200"},               // colour temperature
        {0x0322, "rational64u[1] 16384/34488"},   // white-balance level red
        {0x0323, "rational64u[1] 16384/16384"},   // green
        {0x0324, "rational64u[1] 16384/20567"},   // blue
        {0x0325, "int32u[1] 0"},                  // UV/IR correction
        {0x0330, "int32u[1] 1"},                  // CCD version
        {0x0331, "int32u[1] 2"},                  // CCD board version
        {0x0332, "int32u[1] 3"},                  // controller version
        {0x0333, "int32u[1] 4"},                  // M16C version
        {0x0340, "int32u[1] 1"},                  // image number
    };
}

}  // namespace end_to_end
