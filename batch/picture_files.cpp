// SPDX-License-Identifier: MIT
#include "batch/picture_files.h"

#include "batch/picture.h"

PictureFiles::PictureFiles(const std::string& input_path)
    : input(input_path),
      folder(FolderIn(input_path)),
      base(WithoutExtension(NameIn(input_path))),
      is_camera_dng(!input_path.ends_with(".RAW")) {}

std::optional<PictureIdentity> IdentityOf(const PictureFiles& files) {
    return files.is_camera_dng ? IdentityOfDng(files.Identifying()) : IdentityOfJpg(files.Identifying());
}
