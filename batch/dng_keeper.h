// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_DNG_KEEPER_H
#define VELMARCON_BATCH_DNG_KEEPER_H

#include <string>

#include "batch/conversion.h"
#include "batch/folder_checksums.h"
#include "batch/jobs.h"
#include "batch/picture_at_work.h"
#include "batch/proof/dng_proof.h"

/// Keeps the DNG that a picture has, and proves that it is what it should be if the task says so.
class DngKeeper {
  public:
    /// Everything is owned by the caller.
    DngKeeper(const WorkerSettings& options, Conversion& conversion)
        : options_(options), conversion_(conversion) {}

    /// The DNG must be complete and the picture's own.
    void Keep(PictureAtWork& picture);

  private:
    void Prove(PictureAtWork& picture);
    [[nodiscard]] bool ProveWithGuessedOptions(PictureAtWork& picture);
    [[nodiscard]] bool KeepRewritten(DngProof& proof, PictureAtWork& picture);
    void FailMismatch(const std::string& mismatch, PictureAtWork& picture);
    void CompareChecksum(Record& record);

    const WorkerSettings& options_;
    Conversion& conversion_;
    FolderChecksums checksums_;
};

#endif  // VELMARCON_BATCH_DNG_KEEPER_H
