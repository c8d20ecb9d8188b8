// SPDX-License-Identifier: MIT
#include "batch/dng_keeper.h"

#include <vector>

#include "batch/conversion_options.h"
#include "batch/dng_comparison.h"
#include "batch/fingerprint.h"
#include "batch/guessed_options.h"
#include "batch/picture.h"
#include "batch/picture_damage.h"
#include "batch/read_back.h"
#include "system/sha256.h"

void DngKeeper::Keep(PictureAtWork& picture) {
    const TaskMode mode = picture.task.mode;
    picture.record.verdict = Verdict::kKept;
    if (mode != TaskMode::kProve && mode != TaskMode::kVerify) {
        return;
    }
    Prove(picture);
    if (picture.record.verdict == Verdict::kFailed) {
        picture.record.made_with = kDiffers;
    }
}

/// Compares the DNG with what it was made of.
void DngKeeper::Prove(PictureAtWork& picture) {
    const Task& task = picture.task;
    Record& record = picture.record;
    const RunSettings settings = conversion_options::Settings(task.options);
    DngProof proof(settings, conversion_.lenses(), conversion_.sensors());
    const std::string mismatch = CompareDng(proof, options_.checksums, picture);
    if (!mismatch.empty()) {
        const bool is_settled = (!task.options_known && ProveWithGuessedOptions(picture)) ||
                                (proof.WasRewritten() && KeepRewritten(proof, picture));
        if (!is_settled) {
            FailMismatch(mismatch, picture);
        }
        return;
    }
    if (!task.fingerprint.empty() && task.fingerprint != record.fingerprint) {
        record.Fail(NameIn(record.dng) + " is there, but was changed since it was made" +
                        (task.mode == TaskMode::kVerify ? "" : "; -r makes it anew"),
                    "there, but changed");
        return;
    }
    record.made_with = kAsSupposed;
    if (task.mode == TaskMode::kVerify) {
        CompareChecksum(record);
    }
}

/// Of a DNG of unknown origin, which may have been made with options that its tags show. Returns whether
/// that is settled.
bool DngKeeper::ProveWithGuessedOptions(PictureAtWork& picture) {
    if (picture.files.is_camera_dng) {
        return false;
    }
    Record& record = picture.record;
    for (const std::vector<std::string>& guess : GuessedOptions(record.dng, picture.files.Jpg())) {
        const RunSettings settings = conversion_options::Settings(guess);
        DngProof proof(settings, conversion_.lenses(), conversion_.sensors());
        const std::string mismatch = CompareDng(proof, options_.checksums, picture);
        if (IsOfPixels(mismatch)) {
            FailMismatch(mismatch, picture);
            return true;
        }
        if (mismatch.empty()) {
            record.made_with = kGuessed;
            for (const std::string& word : guess) {
                record.made_with += word + " ";
            }
            return true;
        }
    }
    return false;
}

/// What another program changes of the metadata, such as a rating, is no damage; nothing may advise to lose
/// it. Returns whether that is settled.
bool DngKeeper::KeepRewritten(DngProof& proof, PictureAtWork& picture) {
    constexpr const char* changed = "was changed by another program";
    const PictureFiles& files = picture.files;
    Record& record = picture.record;
    const std::string mismatch = proof.CheckPixels(files.folder, files.base, files.is_camera_dng, record.dng);
    if (IsOfPixels(mismatch)) {
        if (!KeepFromDamage(picture, conversion_.settings())) {
            record.Fail(NameIn(record.dng) + " " + changed + ", and " + mismatch,
                        KindOfMismatch(std::string(changed) + ", and " + mismatch));
        }
        return true;
    }
    if (!mismatch.empty()) {
        record.Fail(NameIn(record.dng) + " " + changed + ", and its pixels cannot be compared",
                    std::string(changed) + ", and its pixels cannot be compared");
        return true;
    }
    ReadBack bytes;
    if (!bytes.Load(record.dng)) {
        return false;
    }
    Fingerprint fingerprint;
    fingerprint.Add(bytes.bytes());
    record.fingerprint = fingerprint.Hex();
    record.text = NameIn(record.dng) + " " + changed + "; its pixels match";
    return true;
}

/// Either file may be the one that was changed.
void DngKeeper::FailMismatch(const std::string& mismatch, PictureAtWork& picture) {
    if (KeepFromDamage(picture, conversion_.settings())) {
        return;
    }
    const Task& task = picture.task;
    Record& record = picture.record;
    const std::string options =
        task.options_known ? "" : "; if it was made with other options, such as -s, name them";
    const std::string advice =
        picture.files.is_camera_dng
            ? "; if the camera's DNG is the good one, delete the other one and run this again"
            : "; if the RAW file is the good one, delete the DNG and run this again";
    record.Fail(NameIn(record.dng) + " is there, but " + mismatch + options +
                    (task.mode == TaskMode::kVerify ? "" : advice),
                KindOfMismatch("there, but " + mismatch));
}

/// With the one that the file SHA256SUMS has of it, if there is one.
void DngKeeper::CompareChecksum(Record& record) {
    const auto noted = checksums_.Of(record.dng);
    if (noted && Sha256OfFile(record.dng) != *noted) {
        record.Fail("its check sum is not the one in SHA256SUMS", "another check sum");
    }
}
