// SPDX-License-Identifier: MIT
#include "batch/dng_comparison.h"

#include <cstdint>
#include <optional>
#include <span>

#include "batch/fingerprint.h"
#include "system/sha256.h"

/// The bytes of the DNG pass by only once: what is to be known of them is taken then.
std::string CompareDng(DngProof& proof, bool checksum, PictureAtWork& picture) {
    Fingerprint fingerprint;
    std::optional<Sha256> sum;
    if (checksum) {
        sum.emplace();
    }
    const auto observer = [&](std::span<const std::uint8_t> bytes) {
        fingerprint.Add(bytes);
        if (sum) {
            sum->Add(bytes);
        }
    };
    const PictureFiles& files = picture.files;
    std::string mismatch =
        proof.Check(files.folder, files.base, files.is_camera_dng, picture.record.dng, observer);
    if (mismatch.empty()) {
        picture.record.fingerprint = fingerprint.Hex();
        picture.record.sha256 = sum ? sum->Hex() : "";
    }
    return mismatch;
}

/// Names begin after its first colon.
std::string KindOfMismatch(const std::string& mismatch) {
    return mismatch.substr(0, mismatch.find(':'));
}

bool IsOfPixels(const std::string& mismatch) {
    return mismatch.find(": pixel ") != std::string::npos;
}
