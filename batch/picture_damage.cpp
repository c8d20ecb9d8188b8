// SPDX-License-Identifier: MIT
#include "batch/picture_damage.h"

#include <string_view>

#include "batch/picture.h"
#include "batch/proof/input_check.h"

namespace {

/// The flaws without what they do to a DNG that is made of the files; empty when there are none.
std::string DamageOf(const PictureFiles& files, const RunSettings& settings) {
    constexpr std::string_view raw_file = "the RAW file ";
    const std::string flaws = FlawsOf(files, settings);
    const std::string cause = flaws.substr(0, flaws.find(", and the "));
    return cause.starts_with(raw_file) ? NameIn(files.input) + " " + cause.substr(raw_file.size()) : cause;
}

}  // namespace

std::string FlawsOf(const PictureFiles& files, const RunSettings& settings) {
    std::string text;
    for (const InputFlaw& flaw : files.is_camera_dng
                                     ? FlawsOfCameraDng(files.input)
                                     : FlawsOfPair(files.folder, files.base, settings.black_level_given)) {
        text += (text.empty() ? "" : "; ") + flaw.text;
    }
    return text;
}

bool KeepFromDamage(PictureAtWork& picture, const RunSettings& settings) {
    const std::string damage = DamageOf(picture.files, settings);
    if (damage.empty()) {
        return false;
    }
    picture.record.Fail(damage + "; the DNG is kept", "damaged files; the DNG is kept");
    return true;
}
