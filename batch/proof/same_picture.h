// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PROOF_SAME_PICTURE_H
#define VELMARCON_BATCH_PROOF_SAME_PICTURE_H

#include <cstdint>
#include <optional>
#include <string>

/// What tells a picture from every other. Texts end before their NUL.
struct PictureIdentity {
    std::string unique_id;     ///< ImageUniqueID
    std::string taken;         ///< DateTimeOriginal as the file has it: "2007:08:02 22:13:49"
    std::uint32_t camera = 0;  ///< serial number

    friend bool operator==(const PictureIdentity&, const PictureIdentity&) = default;
};

/// Of the JPEG at `jpg`; nothing when it cannot be read as one with an EXIF block.
std::optional<PictureIdentity> IdentityOfJpg(const std::string& jpg);

/// Of the DNG at `dng`, be it the camera's own, a repaired or a converted one; nothing when it is no DNG that
/// can be read so far. Its pixels are not looked at.
std::optional<PictureIdentity> IdentityOfDng(const std::string& dng);

/// "2007-08-02 22:13:49, camera 3106091"; without a time "camera 3106091". What is no printable ASCII in the
/// time becomes "?".
std::string IdentityText(const PictureIdentity& identity);

#endif  // VELMARCON_BATCH_PROOF_SAME_PICTURE_H
