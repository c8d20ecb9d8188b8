// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_NUMBERED_NAME_H
#define VELMARCON_BATCH_NUMBERED_NAME_H

#include <optional>
#include <string>

#include "batch/proof/same_picture.h"

/// What the DNG of a picture is called when another picture's has its name: "L1-2.DNG", up to -99.
struct NumberedName {
    std::string dng;      ///< path; empty when no name is free
    bool is_own = false;  ///< there is a complete DNG of the picture
};

constexpr int kFirstNumber = 2;
constexpr int kLastNumber = 99;

/// `dng` with a number.
std::string WithNumber(const std::string& dng, int number);

/// The name that has the picture `own`, or else the first that is free.
NumberedName FindNumberedName(const std::string& dng, const std::optional<PictureIdentity>& own,
                              bool is_pair);

#endif  // VELMARCON_BATCH_NUMBERED_NAME_H
