// SPDX-License-Identifier: MIT
#include "packaging/whole_copy.h"

#include <filesystem>

#include "system/input_file.h"
#include "system/part_files.h"
#include "system/path_names.h"
#include "system/replacement_file.h"

namespace {

namespace fs = std::filesystem;

/// With the mode of `source`, as far as the user lets new files have it.
std::error_code OpenAsNewFile(const std::string& source, const std::string& destination,
                              ReplacementFile& copy) {
    std::error_code unknown;
    const fs::perms permissions = fs::status(source, unknown).permissions();
    constexpr fs::perms who_may_do_what = fs::perms::all;  // without those of a program
    return unknown ? unknown
                   : copy.Open(destination, ReplacementFile::Existing::kKeep, permissions & who_may_do_what);
}

}  // namespace

std::error_code CopyWhole(const std::string& source, const std::string& destination, CopyAccess access) {
    part_files::RemoveStale(path_names::SystemFolderPart(destination));
    InputFile from;
    if (!from.Open(source)) {
        return from.error();
    }
    ReplacementFile copy;
    if (const std::error_code error = access == CopyAccess::kAsSource
                                          ? copy.OpenCopy(destination, source)
                                          : OpenAsNewFile(source, destination, copy)) {
        return error;
    }
    const bool whole = from.ReadPieces([&](std::span<const char> piece) {
        copy.Write(piece);
        return copy.IsGood();
    });
    return !whole && from.error() ? from.error() : copy.CommitToDisk(from.size());
}
