// SPDX-License-Identifier: MIT
#include "batch/numbered_name.h"

#include "batch/complete_dng.h"
#include "batch/picture.h"
#include "system/file_system.h"

std::string WithNumber(const std::string& dng, int number) {
    return WithoutExtension(dng) + "-" + std::to_string(number) + ".DNG";
}

NumberedName FindNumberedName(const std::string& dng, const std::optional<PictureIdentity>& own,
                              bool is_pair) {
    NumberedName free;
    for (int number = kFirstNumber; number <= kLastNumber; ++number) {
        const std::string path = WithNumber(dng, number);
        const bool is_taken = file_system::IsTaken(path);
        if (is_taken && own && IdentityOfDng(path) == own && ProblemOfDng(path, is_pair).empty()) {
            return {path, true};
        }
        if (!is_taken && free.dng.empty()) {
            free.dng = path;
        }
    }
    return free;
}
