// SPDX-License-Identifier: MIT
#include "batch/dng_decision.h"

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

#include "app/input_discovery.h"
#include "batch/complete_dng.h"
#include "batch/file_facts.h"
#include "batch/picture.h"
#include "batch/picture_damage.h"
#include "batch/unreadable_file.h"
#include "system/file_system.h"
#include "system/system_path.h"

namespace {

NumberedName NumberedNameFor(const PictureAtWork& picture) {
    return FindNumberedName(picture.task.dng, IdentityOf(picture.files), !picture.files.is_camera_dng);
}

/// One of the two does not tell which picture it is: the DNG that is there if `is_own_known`, or else the
/// picture itself.
void FailUnknown(bool is_own_known, PictureAtWork& picture) {
    const PictureFiles& files = picture.files;
    Record& record = picture.record;
    if (!is_own_known && !files.is_camera_dng) {
        if (!file_system::IsTaken(files.Jpg())) {
            record.Fail(NameIn(files.Jpg()) + " is missing", "the JPEG is missing");
            return;
        }
        if (FailIfUnreadable(files.Jpg(), record)) {
            return;
        }
    }
    const std::string unknown = NameIn(is_own_known ? record.dng : files.Identifying());
    record.Fail(NameIn(record.dng) + " is there, but " + unknown + " does not say which picture it is",
                "there, unknown picture");
}

}  // namespace

NextStep DngDecision::Decide(PictureAtWork& picture) const {
    const PictureFiles& files = picture.files;
    Record& record = picture.record;
    if (files.is_camera_dng && file_system::IsTaken(files.folder + files.base + ".RAW")) {
        record.Fail("its DNG would have the same name as that of " + files.base + ".RAW",
                    "two pictures for one DNG");
        return NextStep::kNone;
    }
    if (file_system::IsTaken(record.dng)) {
        return DecideForExisting(picture);
    }
    if (options_.rename) {
        const NumberedName name = NumberedNameFor(picture);
        if (name.is_own) {
            return DecideForNumberedName(name, picture);
        }
    }
    if (picture.task.mode == TaskMode::kVerify) {
        record.Fail("there is no " + NameIn(record.dng), "no DNG");
        return NextStep::kNone;
    }
    return NextStep::kMake;
}

NextStep DngDecision::DecideForExisting(PictureAtWork& picture) const {
    const PictureFiles& files = picture.files;
    Record& record = picture.record;
    if (IsSameFile(record.dng, files.input)) {
        return DecideForRepairInPlace(picture);
    }
    std::error_code unknown;
    if (std::filesystem::is_directory(system_path::ToSystem(record.dng), unknown)) {
        record.Fail(NameIn(record.dng) + " is a folder", "a folder in its place");
        return NextStep::kNone;
    }
    const auto state = StateAt(record.dng);
    if (!files.is_camera_dng && state && state->size == static_cast<std::int64_t>(kCameraDngSize)) {
        record.Fail(NameIn(record.dng) + ", which is there, is a camera DNG; use another output folder",
                    "a camera DNG in its place");
        return NextStep::kNone;
    }
    const std::string problem = ProblemOfDng(record.dng, !files.is_camera_dng);
    if (problem.empty()) {
        return DecideForComplete(picture);
    }
    if (settings_.refresh && picture.task.mode == TaskMode::kConvert) {
        return NextStep::kMake;
    }
    const bool may_go = picture.task.mode != TaskMode::kVerify && problem != kOtherDng;
    record.Fail(NameIn(record.dng) + " is there, but " + problem + (may_go ? "; delete it, or use -r" : ""),
                "there, but " + problem);
    return NextStep::kNone;
}

/// A DNG of the camera's own would be replaced by what it is repaired to. Only a conversion on this machine
/// waits for the disk before it replaces a file.
NextStep DngDecision::DecideForRepairInPlace(PictureAtWork& picture) const {
    constexpr const char* kind = "a camera DNG in its place";
    if (picture.task.mode == TaskMode::kVerify || !settings_.refresh) {
        picture.record.Fail("a camera DNG is repaired into another folder (--output), or replaced with -r",
                            kind);
        return NextStep::kNone;
    }
    if (picture.task.mode == TaskMode::kLook) {
        picture.record.Fail("other machines do not replace a camera DNG; leave out --hosts", kind);
        return NextStep::kNone;
    }
    return NextStep::kMake;
}

NextStep DngDecision::DecideForComplete(PictureAtWork& picture) const {
    const TaskMode mode = picture.task.mode;
    const auto own = IdentityOf(picture.files);
    const auto there = IdentityOfDng(picture.record.dng);
    if (own && there && *own != *there) {
        return DecideForOtherPicture(*there, picture);
    }
    if (settings_.refresh && (mode == TaskMode::kConvert || mode == TaskMode::kLook)) {
        return own && there ? DecideForRefresh(picture) : NextStep::kMake;
    }
    if (own && there) {
        return NextStep::kKeep;
    }
    FailUnknown(own.has_value(), picture);
    return NextStep::kNone;
}

NextStep DngDecision::DecideForOtherPicture(const PictureIdentity& there, PictureAtWork& picture) const {
    if (options_.rename) {
        return DecideForNumberedName(NumberedNameFor(picture), picture);
    }
    picture.record.Fail(NameIn(picture.record.dng) + " there is another picture (" + IdentityText(there) +
                            "); --rename gives this one another name",
                        "another picture's DNG in its place");
    return NextStep::kNone;
}

NextStep DngDecision::DecideForNumberedName(const NumberedName& name, PictureAtWork& picture) const {
    const TaskMode mode = picture.task.mode;
    if (name.dng.empty() || (!name.is_own && mode == TaskMode::kVerify)) {
        picture.record.Fail("no name is free for it", "no free name");
        return NextStep::kNone;
    }
    picture.record.dng = name.dng;
    if (name.is_own && settings_.refresh && mode == TaskMode::kConvert) {
        return DecideForRefresh(picture);
    }
    return name.is_own ? NextStep::kKeep : NextStep::kMake;
}

/// A complete DNG that is the picture's own is replaced, unless its files are damaged.
NextStep DngDecision::DecideForRefresh(PictureAtWork& picture) const {
    const bool is_kept = !options_.accept_damaged && KeepFromDamage(picture, settings_);
    return is_kept ? NextStep::kNone : NextStep::kMake;
}
