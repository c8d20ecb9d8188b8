// SPDX-License-Identifier: MIT
#include "exif/exif_info.h"

#include <utility>

void EXIFInfo::clear() {
    EXIFInfo before = std::exchange(*this, EXIFInfo());
    MaxApertureValue = before.MaxApertureValue;
    WhiteBalance = before.WhiteBalance;
    ImageUniqueID = std::move(before.ImageUniqueID);
    SerialNumber = before.SerialNumber;
    LensCode = before.LensCode;
    FrameSelector = before.FrameSelector;
    for (const auto rational : {&EXIFInfo::Mn0311, &EXIFInfo::Mn0312, &EXIFInfo::Mn0313, &EXIFInfo::Mn0322,
                                &EXIFInfo::Mn0323, &EXIFInfo::Mn0324}) {
        this->*rational = before.*rational;
    }
    for (const auto ratio : {&EXIFInfo::Mn0322Ratio, &EXIFInfo::Mn0323Ratio, &EXIFInfo::Mn0324Ratio}) {
        this->*ratio = before.*ratio;
    }
}
