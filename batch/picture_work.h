// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PICTURE_WORK_H
#define VELMARCON_BATCH_PICTURE_WORK_H

#include <optional>
#include <string>
#include <system_error>

#include "batch/conversion.h"
#include "batch/jobs.h"
#include "batch/proof/checksums.h"
#include "batch/proof/dng_proof.h"
#include "batch/proof/same_picture.h"
#include "batch/records.h"
#include "system/captured_output.h"

/// The files of a picture.
struct PictureFiles {
    explicit PictureFiles(const Task& task);

    std::string input;
    std::string folder;  ///< of the input, with its separator
    std::string base;    ///< the input's name without extension
    bool is_camera_dng = false;
};

/// Of the picture itself; nothing when its files do not tell.
std::optional<PictureIdentity> IdentityOf(const PictureFiles& files);

/// Does one picture after the other: looks at the DNG that is there, makes one if that is to be, and looks at
/// that one.
class PictureWork {
  public:
    /// The lines that a conversion prints are read from `output`. Everything is owned by the caller.
    PictureWork(const WorkerSettings& options, CapturedOutput& output);

    /// What became of the picture; nothing when the task is only to look, and only a conversion can tell.
    std::optional<Record> Do(const Task& task);

    Conversion& conversion() { return conversion_; }

  private:
    void Fail(const std::string& text, const std::string& kind);
    [[nodiscard]] bool SettleWithout(const Task& task, const PictureFiles& files);
    [[nodiscard]] bool SettleExisting(const Task& task, const PictureFiles& files);
    [[nodiscard]] bool SettleInPlace(const Task& task);
    [[nodiscard]] bool SettleComplete(const Task& task, const PictureFiles& files);
    [[nodiscard]] bool SettleOtherPicture(const Task& task, const PictureFiles& files);
    [[nodiscard]] bool SettleFreeName(const Task& task, const PictureFiles& files);
    [[nodiscard]] bool KeepFromDamage(const PictureFiles& files);
    void FailMismatch(const std::string& mismatch, const Task& task, const PictureFiles& files);
    void Keep(const Task& task, const PictureFiles& files);
    void Prove(const Task& task, const PictureFiles& files);
    [[nodiscard]] bool SettleOtherOptions(const Task& task, const PictureFiles& files);
    [[nodiscard]] bool KeepRewritten(DngProof& proof, const PictureFiles& files);
    void CompareChecksum();
    void Convert(const PictureFiles& files);
    void FailUnreadable(const std::string& path, std::error_code error);
    [[nodiscard]] bool CanBegin(const PictureFiles& files);
    std::string Make(const PictureFiles& files);
    std::string MakeUnderFreeName(const PictureFiles& files, const std::string& folder);
    void Judge(const PictureFiles& files, const std::string& reason);
    void TakeDng(const PictureFiles& files);
    std::string Compare(DngProof& proof, const PictureFiles& files);
    void Finish(const Task& task, const PictureFiles& files);

    const WorkerSettings& options_;
    Conversion conversion_;
    DngProof proof_;
    Record record_;  ///< of the picture at work

    std::string checksums_folder_;  ///< from which the check sums are
    Checksums checksums_;
};

#endif  // VELMARCON_BATCH_PICTURE_WORK_H
