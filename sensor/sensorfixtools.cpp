// SPDX-License-Identifier: MIT
#include "sensor/sensorfixtools.h"

#include <cstdlib>
#include <ctime>

#include "input/read_input_data.h"

sensorfixtools::sensorfixtools() {
    // The dither has to differ from image to image, and nobody gains by predicting it.
    std::srand(static_cast<unsigned int>(std::clock()));  // NOLINT(cert-msc32-c,cert-msc51-cpp)
    constexpr int discarded = 3;
    for (int i = 0; i < discarded; ++i) {
        (void)std::rand();  // NOLINT(cert-msc30-c,cert-msc50-cpp)
    }
}

int sensorfixtools::fixPixelLine(ReadInputData* image, sensdb* db, bool test) {
    return fixPixelLine(image->Exif.SerialNumber, &image->ImageData, image->Width, image->Height, db, test);
}

int sensorfixtools::fixBlackLevels(ReadInputData* image, sensdb* db, bool estimate) {
    return fixBlackLevels(image->Exif.SerialNumber, &image->ImageData, image->Exif.ISOSpeedRatings,
                          image->Width, image->Height, image->ImageSize, db, estimate);
}
