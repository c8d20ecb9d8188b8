// SPDX-License-Identifier: MIT
#include "batch/dng_maker.h"

#include <filesystem>
#include <system_error>

#include "batch/complete_dng.h"
#include "batch/dng_comparison.h"
#include "batch/file_facts.h"
#include "batch/picture.h"
#include "batch/picture_damage.h"
#include "batch/printed_lines.h"
#include "batch/shown.h"
#include "batch/unreadable_file.h"
#include "system/file_system.h"
#include "system/part_files.h"
#include "system/system_path.h"

namespace {

namespace fs = std::filesystem;

/// Makes the folder of the picture's DNG. Returns whether it is there; if not, the picture has failed.
bool MakeFolder(Record& record) {
    const std::string folder = FolderIn(record.dng);
    std::error_code failed;
    fs::create_directories(system_path::ToSystem(folder), failed);
    std::error_code unknown;
    if (fs::is_directory(system_path::ToSystem(folder), unknown)) {
        return true;
    }
    const std::string reason = ErrorText(failed ? failed : std::make_error_code(std::errc::not_a_directory));
    record.Fail("the folder " + folder + " cannot be made: " + reason, "a folder cannot be made: " + reason);
    return false;
}

bool CanBegin(PictureAtWork& picture) {
    Record& record = picture.record;
    if (FailIfUnreadable(picture.files.input, record) ||
        FailIfUnreadable(picture.files.Identifying(), record)) {
        return false;
    }
    if (WhyUnreadable(record.dng)) {
        record.Fail(NameIn(record.dng) + " is there, but cannot be read", "there, but cannot be read");
        return false;
    }
    return MakeFolder(record);
}

}  // namespace

void DngMaker::Make(PictureAtWork& picture) {
    if (!CanBegin(picture)) {
        return;
    }
    Record& record = picture.record;
    // Before the conversion: a repair in its place leaves nothing to look at.
    record.flaws = FlawsOf(picture.files, conversion_.settings());
    const auto before = StateAt(record.dng);
    const std::string reason = Convert(picture);
    if (before && before == StateAt(record.dng)) {
        const std::string why = reason.ends_with('.') ? reason.substr(0, reason.size() - 1) : reason;
        record.Fail((why.empty() ? "velmarcon gave no reason" : why) + "; the old DNG is still there",
                    KindOf(reason));
    } else {
        Judge(reason, picture);
    }
    if (SaysDiskIsFull(reason) && record.verdict == Verdict::kFailed) {
        record.verdict = Verdict::kDiskFull;
    }
    if (record.verdict != Verdict::kConverted) {
        conversion_.Forget();
    }
}

/// Returns why there is no DNG, or what else was said last; what the DNG lacks becomes the record's text.
std::string DngMaker::Convert(PictureAtWork& picture) {
    const PictureFiles& files = picture.files;
    const std::string folder = FolderIn(picture.record.dng);
    const std::string name = NameIn(files.input);
    const bool has_own_name = NameIn(picture.record.dng) == files.base + ".DNG";
    const PrintedLines printed = ReadPrinted(has_own_name ? conversion_.Run(files.folder, name, folder)
                                                          : ConvertUnderFreeName(picture, folder));
    picture.record.text = printed.remarks;
    // The picture is named where the reason is told.
    const bool names_picture = printed.reason.starts_with(name + ": ");
    return names_picture ? printed.reason.substr(name.size() + 2) : printed.reason;
}

/// A conversion names its DNG after the picture: it is made in a folder of its own, and then gets its name.
std::string DngMaker::ConvertUnderFreeName(const PictureAtWork& picture, const std::string& folder) {
    const PictureFiles& files = picture.files;
    const std::string& dng = picture.record.dng;
    const std::string own = folder + part_files::NewName() + "/";
    std::error_code error;
    if (!fs::create_directory(system_path::ToSystem(own), error)) {
        return dng + ": DNG not written: " + ErrorText(error) + "\n";
    }
    std::string printed = conversion_.Run(files.folder, NameIn(files.input), own);
    conversion_.Forget();
    const std::string made = own + files.base + ".DNG";
    if (file_system::IsTaken(made)) {
        const std::error_code failed = conversion_.settings().refresh ? file_system::Rename(made, dng)
                                                                      : file_system::RenameToFree(made, dng);
        if (failed) {
            printed = dng + ": DNG not written: " + ErrorText(failed) + "\n";
        }
    }
    fs::remove_all(system_path::ToSystem(own), error);
    return printed;
}

void DngMaker::Judge(const std::string& reason, PictureAtWork& picture) {
    Record& record = picture.record;
    if (!file_system::IsTaken(record.dng)) {
        record.Fail(reason.empty() ? "velmarcon gave no reason" : reason, KindOf(reason));
        return;
    }
    const std::string problem = ProblemOfDng(record.dng, !picture.files.is_camera_dng);
    if (!problem.empty()) {
        const std::string more = reason.empty() ? "" : ": " + reason;
        record.Fail(NameIn(record.dng) + " " + problem + more,
                    problem + (reason.empty() ? "" : ": " + KindOf(reason)));
        return;
    }
    record.verdict = Verdict::kConverted;
    if (options_.verify && !IsSameFile(record.dng, picture.files.input)) {
        Prove(picture);
    }
}

/// A new DNG that is not what it should be does not keep its name, by which it would be taken for the
/// picture.
void DngMaker::Prove(PictureAtWork& picture) {
    const std::string mismatch = CompareDng(proof_, options_.checksums, picture);
    if (!mismatch.empty()) {
        picture.record.Fail(mismatch, KindOfMismatch(mismatch));
        file_system::Remove(picture.record.dng);
    }
}
