// SPDX-License-Identifier: MIT
#include "exif/exif_info.h"

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

namespace {

constexpr Rational kSet = {3, 7};

/// A record in which nothing is empty or zero.
EXIFInfo FullRecord() {
    EXIFInfo exif;
    exif.LittleEndian = true;
    for (auto text : {&EXIFInfo::ImageDescription, &EXIFInfo::Make, &EXIFInfo::Model, &EXIFInfo::Software,
                      &EXIFInfo::DateTime, &EXIFInfo::DateTimeOriginal, &EXIFInfo::DateTimeDigitized,
                      &EXIFInfo::SubSecTimeOriginal, &EXIFInfo::Copyright, &EXIFInfo::ImageUniqueID,
                      &EXIFInfo::LensCodeBits}) {
        exif.*text = "set";
    }
    for (auto number : {&EXIFInfo::Orientation, &EXIFInfo::BitsPerSample, &EXIFInfo::ISOSpeedRatings,
                        &EXIFInfo::ExposureProgram, &EXIFInfo::FocalLengthIn35mmFilm, &EXIFInfo::Flash,
                        &EXIFInfo::WhiteBalance, &EXIFInfo::MeteringMode, &EXIFInfo::LightSource,
                        &EXIFInfo::FileSource, &EXIFInfo::SceneType, &EXIFInfo::SceneCaptureType}) {
        exif.*number = 9;
    }
    for (auto rational : {&EXIFInfo::ExposureTime, &EXIFInfo::FNumber, &EXIFInfo::ShutterSpeedValue,
                          &EXIFInfo::SubjectDistance, &EXIFInfo::FocalLength, &EXIFInfo::DigitalZoomRatio,
                          &EXIFInfo::MaxApertureValue, &EXIFInfo::Mn0311, &EXIFInfo::Mn0312,
                          &EXIFInfo::Mn0313, &EXIFInfo::Mn0322, &EXIFInfo::Mn0323, &EXIFInfo::Mn0324}) {
        exif.*rational = kSet;
    }
    exif.ExposureBiasValue = {-2, 3};
    exif.ExifVersion = {'0', '2'};
    exif.MakerNote = {1};
    exif.PixelXDimension = 10;
    exif.PixelYDimension = 11;
    exif.SerialNumber = 12;
    exif.LensCode = 13;
    exif.FrameSelector = 2;
    exif.Mn0322Ratio = exif.Mn0323Ratio = exif.Mn0324Ratio = 1.5F;
    return exif;
}

/// The fields that clear() resets.
void ExpectCleared(const EXIFInfo& exif) {
    EXPECT_FALSE(exif.LittleEndian);
    EXPECT_EQ(exif.ImageDescription, "");
    EXPECT_EQ(exif.Make, "");
    EXPECT_EQ(exif.Model, "");
    EXPECT_EQ(exif.Software, "");
    EXPECT_EQ(exif.DateTime, "");
    EXPECT_EQ(exif.DateTimeOriginal, "");
    EXPECT_EQ(exif.DateTimeDigitized, "");
    EXPECT_EQ(exif.SubSecTimeOriginal, "");
    EXPECT_EQ(exif.Copyright, "");
    EXPECT_EQ(exif.LensCodeBits, "");
    EXPECT_TRUE(exif.ExifVersion.empty());
    EXPECT_TRUE(exif.MakerNote.empty());
    EXPECT_EQ(exif.Orientation, 0);
    EXPECT_EQ(exif.BitsPerSample, 0);
    EXPECT_EQ(exif.ISOSpeedRatings, 0);
    EXPECT_EQ(exif.ExposureProgram, 0);
    EXPECT_EQ(exif.FocalLengthIn35mmFilm, 0);
    EXPECT_EQ(exif.Flash, 0);
    EXPECT_EQ(exif.MeteringMode, 0);
    EXPECT_EQ(exif.LightSource, 0);
    EXPECT_EQ(exif.FileSource, 0);
    EXPECT_EQ(exif.SceneType, 0);
    EXPECT_EQ(exif.SceneCaptureType, 0);
    EXPECT_EQ(exif.PixelXDimension, 0U);
    EXPECT_EQ(exif.PixelYDimension, 0U);
    EXPECT_EQ(exif.ExposureTime, (Rational{0, 1}));
    EXPECT_EQ(exif.FNumber, (Rational{0, 1}));
    EXPECT_EQ(exif.ShutterSpeedValue, (Rational{0, 1}));
    EXPECT_EQ(exif.ExposureBiasValue, (SRational{0, 1}));
    EXPECT_EQ(exif.SubjectDistance, (Rational{0, 1}));
    EXPECT_EQ(exif.FocalLength, (Rational{0, 1}));
    EXPECT_EQ(exif.DigitalZoomRatio, (Rational{0, 1}));
}

/// The rationals that clear() leaves alone.
void ExpectKeptRationals(const EXIFInfo& exif, Rational value) {
    EXPECT_EQ(exif.MaxApertureValue, value);
    EXPECT_EQ(exif.Mn0311, value);
    EXPECT_EQ(exif.Mn0312, value);
    EXPECT_EQ(exif.Mn0313, value);
    EXPECT_EQ(exif.Mn0322, value);
    EXPECT_EQ(exif.Mn0323, value);
    EXPECT_EQ(exif.Mn0324, value);
}

TEST(EXIFInfo, ClearEmptiesWhatAFileFills) {
    EXIFInfo exif = FullRecord();
    exif.clear();
    ExpectCleared(exif);
}

TEST(EXIFInfo, ClearKeepsTheUntypedTagsAndTheMakerNotesNumbers) {
    EXIFInfo exif = FullRecord();
    exif.clear();
    ExpectKeptRationals(exif, kSet);
    EXPECT_EQ(exif.WhiteBalance, 9);
    EXPECT_EQ(exif.ImageUniqueID, "set");
    EXPECT_EQ(exif.SerialNumber, 12U);
    EXPECT_EQ(exif.LensCode, 13);
    EXPECT_EQ(exif.FrameSelector, 2);
    EXPECT_EQ(exif.Mn0322Ratio, 1.5F);
    EXPECT_EQ(exif.Mn0323Ratio, 1.5F);
    EXPECT_EQ(exif.Mn0324Ratio, 1.5F);
}

TEST(EXIFInfo, ANewRecordIsClearedAndZeroElsewhere) {
    const EXIFInfo exif;
    ExpectCleared(exif);
    ExpectKeptRationals(exif, {0, 0});
    EXPECT_EQ(exif.WhiteBalance, 0);
    EXPECT_EQ(exif.ImageUniqueID, "");
    EXPECT_EQ(exif.SerialNumber, 0U);
    EXPECT_EQ(exif.LensCode, 0);
    EXPECT_EQ(exif.FrameSelector, 0);
    EXPECT_EQ(exif.Mn0322Ratio, 0.0F);
    EXPECT_EQ(exif.Mn0323Ratio, 0.0F);
    EXPECT_EQ(exif.Mn0324Ratio, 0.0F);
}

}  // namespace
