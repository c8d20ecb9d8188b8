// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PICTURE_AT_WORK_H
#define VELMARCON_BATCH_PICTURE_AT_WORK_H

#include "batch/jobs.h"
#include "batch/picture_files.h"
#include "batch/records.h"

/// A picture while its task is done.
struct PictureAtWork {
    /// `to_do` is owned by the caller. Notes the states of the picture's files.
    explicit PictureAtWork(const Task& to_do);

    const Task& task;
    PictureFiles files;
    Record record;  ///< what is known so far of what becomes of it; its DNG may get another name than the
                    ///< task's
};

#endif  // VELMARCON_BATCH_PICTURE_AT_WORK_H
