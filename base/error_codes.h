// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BASE_ERROR_CODES_H
#define VELMARCON_BASE_ERROR_CODES_H

/// The codes by which every stage reports failure. 0 is success; ErrorHandler holds the messages.
enum ErrorCode : int {
    kNoError = 0,
    kUsage = 1,  ///< no message: the usage text is printed instead
    kBadInput = 2,
    kNoRawFolder = 3,
    kBadOutputFolder = 4,
    kNoRawFiles = 5,
    kRawNotFound = 6,
    kRawUnreadable = 7,
    kRawDamaged = 8,
    kExifDamaged = 9,
    kJpgNotFound = 10,
    kJpgUnreadable = 11,
    kNoLensDatabase = 12,
    kLensNotDetected = 13,
    kNoSensorDatabase = 14,
    kTooManyImages = 15,
    kBiaDamaged = 16,
    kDngDamaged = 17,
    kNoDarkfieldFromDng = 18,
    kNotACameraDng = 19,
};

#endif  // VELMARCON_BASE_ERROR_CODES_H
