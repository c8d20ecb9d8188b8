// SPDX-License-Identifier: MIT
#include "batch/picture_work.h"

#include <chrono>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "app/input_discovery.h"
#include "batch/complete_dng.h"
#include "batch/conversion_options.h"
#include "batch/copy_time.h"
#include "batch/file_facts.h"
#include "batch/fingerprint.h"
#include "batch/guessed_options.h"
#include "batch/numbered_name.h"
#include "batch/picture.h"
#include "batch/printed_lines.h"
#include "batch/proof/input_check.h"
#include "batch/proof/same_picture.h"
#include "batch/read_back.h"
#include "batch/shown.h"
#include "system/file_state.h"
#include "system/file_system.h"
#include "system/input_file.h"
#include "system/part_files.h"
#include "system/sha256.h"
#include "system/system_path.h"

namespace {

namespace fs = std::filesystem;

bool IsSameFile(const std::string& a, const std::string& b) {
    const auto state_a = StateAt(a);
    const auto state_b = StateAt(b);
    return state_a && state_b && state_a->device == state_b->device && state_a->inode == state_b->inode;
}

/// A file that is there and cannot be opened; `error` tells why.
bool IsUnreadable(const std::string& path, std::error_code& error) {
    std::error_code unknown;
    InputFile file;
    if (file.Open(path)) {
        return false;
    }
    error = file.error() ? file.error() : std::make_error_code(std::errc::io_error);
    const bool leads_nowhere = error == std::errc::no_such_file_or_directory && file_system::IsTaken(path);
    return fs::is_regular_file(system_path::ToSystem(path), unknown) ||
           error == std::errc::permission_denied || error == std::errc::operation_not_permitted ||
           leads_nowhere;
}

std::string FlawsOf(const PictureFiles& files, bool dark_frame) {
    std::string text;
    for (const InputFlaw& flaw : files.is_camera_dng ? FlawsOfCameraDng(files.input)
                                                     : FlawsOfPair(files.folder, files.base, dark_frame)) {
        text += (text.empty() ? "" : "; ") + flaw.text;
    }
    return text;
}

/// What is wrong with the files, without what it does to a DNG that is made of them; empty when nothing is.
std::string DamageOf(const PictureFiles& files, bool dark_frame) {
    constexpr std::string_view raw_file = "the RAW file ";
    const std::string flaws = FlawsOf(files, dark_frame);
    const std::string cause = flaws.substr(0, flaws.find(", and the "));
    return cause.starts_with(raw_file) ? NameIn(files.input) + " " + cause.substr(raw_file.size()) : cause;
}

/// Until the first colon, which names begin after.
std::string KindOfMismatch(const std::string& mismatch) {
    return mismatch.substr(0, mismatch.find(':'));
}

}  // namespace

PictureFiles::PictureFiles(const Task& task)
    : input(task.input),
      folder(FolderIn(task.input)),
      base(WithoutExtension(NameIn(task.input))),
      is_camera_dng(!task.input.ends_with(".RAW")) {}

std::optional<PictureIdentity> IdentityOf(const PictureFiles& files) {
    return files.is_camera_dng ? IdentityOfDng(files.input)
                               : IdentityOfJpg(files.folder + files.base + ".JPG");
}

PictureWork::PictureWork(const WorkerSettings& options, CapturedOutput& output)
    : options_(options),
      conversion_(options.options, options.databases, output),
      proof_(conversion_.settings(), conversion_.lenses(), conversion_.sensors()) {}

std::optional<Record> PictureWork::Do(const Task& task) {
    const auto begin = std::chrono::steady_clock::now();
    const PictureFiles files(task);
    record_ = {};
    record_.picture = task.picture;
    record_.dng = task.dng;
    record_.raw_state = StateText(files.input);
    if (!files.is_camera_dng) {
        record_.jpg_state = StateText(files.folder + files.base + ".JPG");
        record_.bia_state = StateText(files.folder + files.base + ".BIA");
    }
    if (!SettleWithout(task, files)) {
        if (task.mode == TaskMode::kLook) {
            return std::nullopt;
        }
        Convert(files);
    }
    if (record_.verdict == Verdict::kConverted || record_.verdict == Verdict::kKept) {
        Finish(task, files);
    }
    const auto elapsed = std::chrono::steady_clock::now() - begin;
    record_.milliseconds =
        static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count());
    return record_;
}

void PictureWork::Fail(const std::string& text, const std::string& kind) {
    record_.verdict = Verdict::kFailed;
    record_.text = text;
    record_.kind = kind;
}

/// Returns whether it is settled without a conversion.
bool PictureWork::SettleWithout(const Task& task, const PictureFiles& files) {
    if (files.is_camera_dng && file_system::IsTaken(files.folder + files.base + ".RAW")) {
        Fail("its DNG would have the same name as that of " + files.base + ".RAW",
             "two pictures for one DNG");
        return true;
    }
    if (file_system::IsTaken(record_.dng)) {
        return SettleExisting(task, files);
    }
    if (options_.rename && FindNumberedName(record_.dng, IdentityOf(files), !files.is_camera_dng).is_own) {
        return SettleFreeName(task, files);
    }
    if (task.mode == TaskMode::kVerify) {
        Fail("there is no " + NameIn(record_.dng), "no DNG");
        return true;
    }
    return false;
}

bool PictureWork::SettleExisting(const Task& task, const PictureFiles& files) {
    if (IsSameFile(record_.dng, files.input)) {
        return SettleInPlace(task);
    }
    std::error_code unknown;
    if (fs::is_directory(system_path::ToSystem(record_.dng), unknown)) {
        Fail(NameIn(record_.dng) + " is a folder", "a folder in its place");
        return true;
    }
    const auto state = StateAt(record_.dng);
    if (!files.is_camera_dng && state && state->size == static_cast<std::int64_t>(kCameraDngSize)) {
        Fail(NameIn(record_.dng) + ", which is there, is a camera DNG; use another output folder",
             "a camera DNG in its place");
        return true;
    }
    const std::string problem = ProblemOfDng(record_.dng, !files.is_camera_dng);
    if (problem.empty()) {
        return SettleComplete(task, files);
    }
    if (conversion_.settings().refresh && task.mode == TaskMode::kConvert) {
        return false;
    }
    Fail(NameIn(record_.dng) + " is there, but " + problem +
             (task.mode == TaskMode::kVerify || problem == kOtherDng ? "" : "; delete it, or use -r"),
         "there, but " + problem);
    return true;
}

/// A DNG of the camera's own would be replaced by what it is repaired to. Only a conversion on this machine
/// waits for the disk before it replaces a file.
bool PictureWork::SettleInPlace(const Task& task) {
    constexpr const char* kind = "a camera DNG in its place";
    if (task.mode == TaskMode::kVerify || !conversion_.settings().refresh) {
        Fail("a camera DNG is repaired into another folder (--output), or replaced with -r", kind);
        return true;
    }
    if (task.mode == TaskMode::kLook) {
        Fail("other machines do not replace a camera DNG; leave out --hosts", kind);
        return true;
    }
    return false;
}

bool PictureWork::SettleComplete(const Task& task, const PictureFiles& files) {
    const auto own = IdentityOf(files);
    const auto there = IdentityOfDng(record_.dng);
    if (own && there && *own != *there) {
        return SettleOtherPicture(task, files);
    }
    const bool refresh = conversion_.settings().refresh;
    if (refresh && (task.mode == TaskMode::kConvert || task.mode == TaskMode::kLook)) {
        return own && there && KeepFromDamage(files);
    }
    const std::string jpg = files.folder + files.base + ".JPG";
    if (std::error_code error; !own && !files.is_camera_dng) {
        if (!file_system::IsTaken(jpg)) {
            Fail(NameIn(jpg) + " is missing", "the JPEG is missing");
            return true;
        }
        if (IsUnreadable(jpg, error)) {
            FailUnreadable(jpg, error);
            return true;
        }
    }
    if (!own || !there) {
        const std::string file =
            !own ? NameIn(files.is_camera_dng ? files.input : files.base + ".JPG") : NameIn(record_.dng);
        Fail(NameIn(record_.dng) + " is there, but " + file + " does not say which picture it is",
             "there, unknown picture");
        return true;
    }
    Keep(task, files);
    return true;
}

bool PictureWork::SettleOtherPicture(const Task& task, const PictureFiles& files) {
    if (options_.rename) {
        return SettleFreeName(task, files);
    }
    const auto there = IdentityOfDng(record_.dng);
    Fail(NameIn(record_.dng) + " there is another picture" +
             (there ? " (" + IdentityText(*there) + ")" : "") + "; --rename gives this one another name",
         "another picture's DNG in its place");
    return true;
}

/// Under a name with a number that has this picture, or is free.
bool PictureWork::SettleFreeName(const Task& task, const PictureFiles& files) {
    const NumberedName name = FindNumberedName(task.dng, IdentityOf(files), !files.is_camera_dng);
    if (name.dng.empty() || (!name.is_own && task.mode == TaskMode::kVerify)) {
        Fail("no name is free for it", "no free name");
        return true;
    }
    record_.dng = name.dng;
    if (name.is_own && conversion_.settings().refresh && task.mode == TaskMode::kConvert) {
        return KeepFromDamage(files);
    }
    if (name.is_own) {
        Keep(task, files);
    }
    return name.is_own;
}

/// A complete DNG may be the only whole copy of a picture whose files are damaged. Returns whether it stays
/// for that reason.
bool PictureWork::KeepFromDamage(const PictureFiles& files) {
    const std::string damage =
        options_.accept_damaged ? "" : DamageOf(files, conversion_.settings().black_level_given);
    if (!damage.empty()) {
        Fail(damage + "; the DNG is kept", "damaged files; the DNG is kept");
    }
    return !damage.empty();
}

/// Either file may be the one that was changed.
void PictureWork::FailMismatch(const std::string& mismatch, const Task& task, const PictureFiles& files) {
    const std::string advice =
        files.is_camera_dng ? "; if the camera's DNG is the good one, delete the other one and run this again"
                            : "; if the RAW file is the good one, delete the DNG and run this again";
    const std::string options =
        task.options_known ? "" : "; if it was made with other options, such as -s, name them";
    if (const std::string damage = DamageOf(files, conversion_.settings().black_level_given);
        !damage.empty()) {
        Fail(damage + "; the DNG is kept", "damaged files; the DNG is kept");
        return;
    }
    Fail(NameIn(record_.dng) + " is there, but " + mismatch + options +
             (task.mode == TaskMode::kVerify ? "" : advice),
         KindOfMismatch("there, but " + mismatch));
}

/// Of a DNG that is complete and this picture's.
void PictureWork::Keep(const Task& task, const PictureFiles& files) {
    record_.verdict = Verdict::kKept;
    if (task.mode != TaskMode::kProve && task.mode != TaskMode::kVerify) {
        return;
    }
    Prove(task, files);
    if (record_.verdict == Verdict::kFailed) {
        record_.made_with = kDiffers;
    }
}

/// Compares the DNG with what it was made of.
void PictureWork::Prove(const Task& task, const PictureFiles& files) {
    const RunSettings settings = conversion_options::Settings(task.options);
    DngProof proof(settings, conversion_.lenses(), conversion_.sensors());
    const std::string mismatch = Compare(proof, files);
    if (!mismatch.empty() && !task.options_known && SettleOtherOptions(task, files)) {
        return;
    }
    if (!mismatch.empty()) {
        if (!proof.WasRewritten() || !KeepRewritten(proof, files)) {
            FailMismatch(mismatch, task, files);
        }
    } else if (!task.fingerprint.empty() && task.fingerprint != record_.fingerprint) {
        Fail(NameIn(record_.dng) + " is there, but was changed since it was made" +
                 (task.mode == TaskMode::kVerify ? "" : "; -r makes it anew"),
             "there, but changed");
    } else {
        record_.made_with = kAsSupposed;
        if (task.mode == TaskMode::kVerify) {
            CompareChecksum();
        }
    }
}

/// Of a DNG of unknown origin, which may have been made with options that its tags show. Returns whether
/// that is settled.
bool PictureWork::SettleOtherOptions(const Task& task, const PictureFiles& files) {
    if (files.is_camera_dng) {
        return false;
    }
    for (const std::vector<std::string>& guess :
         GuessedOptions(record_.dng, files.folder + files.base + ".JPG")) {
        const RunSettings settings = conversion_options::Settings(guess);
        DngProof proof(settings, conversion_.lenses(), conversion_.sensors());
        const std::string mismatch = Compare(proof, files);
        if (mismatch.find(": pixel ") != std::string::npos) {
            FailMismatch(mismatch, task, files);
            return true;
        }
        if (mismatch.empty()) {
            record_.made_with = kGuessed;
            for (const std::string& word : guess) {
                record_.made_with += word + " ";
            }
            return true;
        }
    }
    return false;
}

/// What another program changes of the metadata, such as a rating, is no damage; nothing may advise to lose
/// it. Returns whether that is settled.
bool PictureWork::KeepRewritten(DngProof& proof, const PictureFiles& files) {
    constexpr const char* changed = "was changed by another program";
    const std::string mismatch =
        proof.CheckPixels(files.folder, files.base, files.is_camera_dng, record_.dng);
    if (!mismatch.empty() && mismatch.find(": pixel ") == std::string::npos) {
        Fail(NameIn(record_.dng) + " " + changed + ", and its pixels cannot be compared",
             std::string(changed) + ", and its pixels cannot be compared");
        return true;
    }
    if (!mismatch.empty() && DamageOf(files, conversion_.settings().black_level_given).empty()) {
        Fail(NameIn(record_.dng) + " " + changed + ", and " + mismatch,
             KindOfMismatch(std::string(changed) + ", and " + mismatch));
        return true;
    }
    ReadBack bytes;
    if (!mismatch.empty() || !bytes.Load(record_.dng)) {
        return false;
    }
    Fingerprint fingerprint;
    fingerprint.Add(bytes.bytes());
    record_.fingerprint = fingerprint.Hex();
    record_.text = NameIn(record_.dng) + " " + changed + "; its pixels match";
    return true;
}

/// With the one that the file SHA256SUMS has of it, if there is one.
void PictureWork::CompareChecksum() {
    const std::string folder = FolderIn(record_.dng);
    if (folder != checksums_folder_) {
        checksums_.clear();
        checksums_folder_ = folder;
        (void)ReadChecksums(folder, checksums_);
    }
    const auto found = checksums_.find(NameIn(record_.dng));
    if (found == checksums_.end()) {
        return;
    }
    if (Sha256OfFile(record_.dng) != found->second) {
        Fail("its check sum is not the one in SHA256SUMS", "another check sum");
    }
}

void PictureWork::Convert(const PictureFiles& files) {
    if (!CanBegin(files)) {
        return;
    }
    record_.flaws = FlawsOf(
        files, conversion_.settings().black_level_given);  // a repair in its place leaves nothing to look at
    const auto before = StateAt(record_.dng);
    const std::string reason = Make(files);
    if (before && before == StateAt(record_.dng)) {
        const std::string why = reason.ends_with('.') ? reason.substr(0, reason.size() - 1) : reason;
        Fail((why.empty() ? "velmarcon gave no reason" : why) + "; the old DNG is still there",
             KindOf(reason));
    } else {
        Judge(files, reason);
    }
    if (SaysDiskIsFull(reason) && record_.verdict == Verdict::kFailed) {
        record_.verdict = Verdict::kDiskFull;
    }
    if (record_.verdict != Verdict::kConverted) {
        conversion_.Forget();
    }
}

void PictureWork::FailUnreadable(const std::string& path, std::error_code error) {
    Fail(NameIn(path) + " cannot be read: " + ErrorText(error), "cannot be read: " + ErrorText(error));
}

bool PictureWork::CanBegin(const PictureFiles& files) {
    std::error_code error;
    const std::string jpg = files.folder + files.base + ".JPG";
    for (const std::string& path : {files.input, files.is_camera_dng ? files.input : jpg}) {
        if (IsUnreadable(path, error)) {
            FailUnreadable(path, error);
            return false;
        }
    }
    if (IsUnreadable(record_.dng, error)) {
        Fail(NameIn(record_.dng) + " is there, but cannot be read", "there, but cannot be read");
        return false;
    }
    const std::string folder = FolderIn(record_.dng);
    std::error_code failed;
    fs::create_directories(system_path::ToSystem(folder), failed);
    std::error_code unknown;
    if (!fs::is_directory(system_path::ToSystem(folder), unknown)) {
        const std::string reason =
            ErrorText(failed ? failed : std::make_error_code(std::errc::not_a_directory));
        Fail("the folder " + folder + " cannot be made: " + reason, "a folder cannot be made: " + reason);
        return false;
    }
    return true;
}

/// Returns why there is no DNG, or what else was said last; what the DNG lacks becomes the record's text.
std::string PictureWork::Make(const PictureFiles& files) {
    const std::string folder = FolderIn(record_.dng);
    const std::string name = NameIn(files.input);
    const bool has_own_name = NameIn(record_.dng) == files.base + ".DNG";
    const PrintedLines printed = ReadPrinted(has_own_name ? conversion_.Run(files.folder, name, folder)
                                                          : MakeUnderFreeName(files, folder));
    record_.text = printed.remarks;
    // The picture is named where the reason is told.
    const bool names_picture = printed.reason.starts_with(name + ": ");
    return names_picture ? printed.reason.substr(name.size() + 2) : printed.reason;
}

/// A conversion names its DNG after the picture: it is made in a folder of its own, and then gets its name.
std::string PictureWork::MakeUnderFreeName(const PictureFiles& files, const std::string& folder) {
    const std::string own = folder + part_files::NewName() + "/";
    std::error_code error;
    if (!fs::create_directory(system_path::ToSystem(own), error)) {
        return record_.dng + ": DNG not written: " + ErrorText(error) + "\n";
    }
    std::string printed = conversion_.Run(files.folder, NameIn(files.input), own);
    conversion_.Forget();
    const std::string made = own + files.base + ".DNG";
    if (file_system::IsTaken(made)) {
        const std::error_code failed = conversion_.settings().refresh
                                           ? file_system::Rename(made, record_.dng)
                                           : file_system::RenameToFree(made, record_.dng);
        if (failed) {
            printed = record_.dng + ": DNG not written: " + ErrorText(failed) + "\n";
        }
    }
    fs::remove_all(system_path::ToSystem(own), error);
    return printed;
}

void PictureWork::Judge(const PictureFiles& files, const std::string& reason) {
    if (!file_system::IsTaken(record_.dng)) {
        Fail(reason.empty() ? "velmarcon gave no reason" : reason, KindOf(reason));
        return;
    }
    const std::string problem = ProblemOfDng(record_.dng, !files.is_camera_dng);
    if (!problem.empty()) {
        const std::string more = reason.empty() ? "" : ": " + reason;
        Fail(NameIn(record_.dng) + " " + problem + more,
             problem + (reason.empty() ? "" : ": " + KindOf(reason)));
        return;
    }
    record_.verdict = Verdict::kConverted;
    TakeDng(files);
}

/// A new DNG that is not what it should be does not keep its name, by which it would be taken for the
/// picture.
void PictureWork::TakeDng(const PictureFiles& files) {
    const bool in_place = IsSameFile(record_.dng, files.input);
    if (!options_.verify || in_place) {
        return;
    }
    const std::string mismatch = Compare(proof_, files);
    if (!mismatch.empty()) {
        Fail(mismatch, KindOfMismatch(mismatch));
        file_system::Remove(record_.dng);
    }
}

/// Its bytes pass by only once: what is to be known of them is taken then.
std::string PictureWork::Compare(DngProof& proof, const PictureFiles& files) {
    Fingerprint fingerprint;
    std::optional<Sha256> sum;
    if (options_.checksums) {
        sum.emplace();
    }
    std::string mismatch = proof.Check(files.folder, files.base, files.is_camera_dng, record_.dng,
                                       [&](std::span<const std::uint8_t> bytes) {
                                           fingerprint.Add(bytes);
                                           if (sum) {
                                               sum->Add(bytes);
                                           }
                                       });
    if (mismatch.empty()) {
        record_.fingerprint = fingerprint.Hex();
        record_.sha256 = sum ? sum->Hex() : "";
    }
    return mismatch;
}

/// What is told of a picture that has its DNG.
void PictureWork::Finish(const Task& task, const PictureFiles& files) {
    if (options_.keep_time && task.mode != TaskMode::kVerify) {
        CopyTime(files.input, record_.dng);
    }
    if (options_.checksums && record_.sha256.empty()) {
        const auto sum = Sha256OfFile(record_.dng);
        if (!sum) {
            Fail(NameIn(record_.dng) + " cannot be read back", "cannot be read back");
            return;
        }
        record_.sha256 = *sum;
    }
    record_.dng_state = FullStateText(record_.dng);
    if (record_.verdict == Verdict::kKept) {
        record_.flaws = FlawsOf(files, conversion_.settings().black_level_given);
    }
}
