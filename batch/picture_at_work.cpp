// SPDX-License-Identifier: MIT
#include "batch/picture_at_work.h"

PictureAtWork::PictureAtWork(const Task& to_do) : task(to_do), files(to_do.input) {
    record.picture = task.picture;
    record.dng = task.dng;
    record.raw_state = StateText(files.input);
    if (!files.is_camera_dng) {
        record.jpg_state = StateText(files.Jpg());
        record.bia_state = StateText(files.DarkFrame());
    }
}
