// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_NUMBER_TEXT_H
#define VELMARCON_CALIBRATE_NUMBER_TEXT_H

#include <string>

/// `value` with this many decimals.
std::string Fixed(float value, int decimals);

/// `value` with this many decimals and its sign, including +.
std::string Signed(float value, int decimals);

#endif  // VELMARCON_CALIBRATE_NUMBER_TEXT_H
