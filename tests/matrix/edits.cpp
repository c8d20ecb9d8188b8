// SPDX-License-Identifier: MIT
#include "tests/matrix/edits.h"

#include "samples/camera_jpeg.h"
#include "samples/maker_note.h"

namespace matrix {

std::string EditableDirectory::Name() const {
    return std::string(kind == Kind::kPair ? "jpeg/" : "dng/") + NameOf(directory);
}

const std::vector<EditableDirectory>& EditableDirectories() {
    static const std::vector<EditableDirectory> directories = [] {
        const auto block = samples::CameraExif({});
        const auto dng = SmallDng();
        return std::vector<EditableDirectory>{
            {Kind::kPair, Directory::kMain, block.ifd0},
            {Kind::kPair, Directory::kExif, block.exif},
            {Kind::kPair, Directory::kNote, samples::JpegMakerNoteEntries({})},
            {Kind::kDng, Directory::kMain, dng.ifd0},
            {Kind::kDng, Directory::kRaw, dng.raw_ifd},
            {Kind::kDng, Directory::kExif, dng.exif},
            {Kind::kDng, Directory::kNote, samples::DngMakerNoteEntries({})},
        };
    }();
    return directories;
}

void AddEdit(CaseList& cases, const char* group, const EditableDirectory& where, const std::string& name,
             Pixels pixels, const Edit& edit) {
    cases.Add(group, where.Name() + "/" + name, where.kind, pixels,
              [kind = where.kind, directory = where.directory, edit] {
                  return kind == Kind::kPair ? EditedJpeg(directory, edit) : EditedDng(directory, edit);
              });
}

}  // namespace matrix
