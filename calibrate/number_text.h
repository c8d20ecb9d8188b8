// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_NUMBER_TEXT_H
#define VELMARCON_CALIBRATE_NUMBER_TEXT_H

#include <string>

/// `value` with so many decimals.
std::string Fixed(float value, int decimals);

/// The same with its sign, + included.
std::string Signed(float value, int decimals);

#endif  // VELMARCON_CALIBRATE_NUMBER_TEXT_H
