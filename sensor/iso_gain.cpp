// SPDX-License-Identifier: MIT
#include "sensor/iso_gain.h"

std::uint16_t IsoGain(std::uint16_t iso) {
    switch (iso) {
        case 320:
            return 2;
        case 640:
            return 4;
        case 1250:
            return 8;
        case 2500:
            return 16;
        default:
            return 1;
    }
}
