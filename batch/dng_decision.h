// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_DNG_DECISION_H
#define VELMARCON_BATCH_DNG_DECISION_H

#include <cstdint>

#include "app/run_settings.h"
#include "batch/jobs.h"
#include "batch/numbered_name.h"
#include "batch/picture_at_work.h"
#include "batch/proof/same_picture.h"

/// What is to be done about the DNG of a picture.
enum class NextStep : std::uint8_t {
    kMake,  ///< make it; one that is there is replaced
    kKeep,  ///< keep the one that is there: it is complete and the picture's own
    kNone,  ///< nothing, the picture has failed
};

/// Decides what is to be done about the DNG of a picture by what is there under its name.
class DngDecision {
  public:
    /// `settings` are those of a conversion. Everything is owned by the caller.
    DngDecision(const WorkerSettings& options, const RunSettings& settings)
        : options_(options), settings_(settings) {}

    /// With --rename, the record gets the name of the picture's own DNG, or of the one that is to be made.
    NextStep Decide(PictureAtWork& picture) const;

  private:
    NextStep DecideForExisting(PictureAtWork& picture) const;
    NextStep DecideForRepairInPlace(PictureAtWork& picture) const;
    NextStep DecideForComplete(PictureAtWork& picture) const;
    NextStep DecideForOtherPicture(const PictureIdentity& there, PictureAtWork& picture) const;
    NextStep DecideForNumberedName(const NumberedName& name, PictureAtWork& picture) const;
    NextStep DecideForRefresh(PictureAtWork& picture) const;

    const WorkerSettings& options_;
    const RunSettings& settings_;
};

#endif  // VELMARCON_BATCH_DNG_DECISION_H
