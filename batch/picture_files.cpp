// SPDX-License-Identifier: MIT
#include "batch/picture_files.h"

#include "batch/picture.h"

PictureFiles::PictureFiles(const Task& task)
    : input(task.input),
      folder(FolderIn(task.input)),
      base(WithoutExtension(NameIn(task.input))),
      is_camera_dng(!task.input.ends_with(".RAW")) {}

std::optional<PictureIdentity> IdentityOf(const PictureFiles& files) {
    return files.is_camera_dng ? IdentityOfDng(files.Identifying()) : IdentityOfJpg(files.Identifying());
}
