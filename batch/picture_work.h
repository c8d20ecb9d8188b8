// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PICTURE_WORK_H
#define VELMARCON_BATCH_PICTURE_WORK_H

#include <optional>

#include "batch/conversion.h"
#include "batch/dng_decision.h"
#include "batch/dng_keeper.h"
#include "batch/dng_maker.h"
#include "batch/jobs.h"
#include "batch/picture_at_work.h"
#include "batch/records.h"
#include "system/captured_output.h"

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
    void Finish(PictureAtWork& picture) const;

    const WorkerSettings& options_;
    Conversion conversion_;
    DngDecision decision_;
    DngKeeper keeper_;
    DngMaker maker_;
};

#endif  // VELMARCON_BATCH_PICTURE_WORK_H
