// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_FILE_SYSTEMS_FOLDER_FAULT_H
#define VELMARCON_TESTS_FILE_SYSTEMS_FOLDER_FAULT_H

#include <array>
#include <cstdint>
#include <string_view>

namespace file_systems {

/// The fault of a file system.
enum class FolderFault : std::uint8_t {
    kNone,
    kShortSizes,        ///< reports each file's length one byte too short
    kLongSizes,         ///< reports each file's length one byte too long
    kShortWrites,       ///< a write accepts half of its data
    kZeroWrites,        ///< a write accepts nothing and reports no error
    kFlushFails,        ///< closing a written file fails
    kSyncFails,         ///< flushing a file to the disk fails
    kRenameFails,       ///< renaming fails
    kPlainRenameOnly,   ///< a rename always replaces an existing file; there are no hard links
    kUnstableInodes,    ///< every query for a file returns another inode number
    kLettersOfAnyCase,  ///< file names ignore case
};

struct NamedFault {
    std::string_view name;
    FolderFault fault;
};

/// The name of each fault, as faulty_folder takes it.
constexpr auto kFolderFaults = std::to_array<NamedFault>({
    {"None", FolderFault::kNone},
    {"ShortSizes", FolderFault::kShortSizes},
    {"LongSizes", FolderFault::kLongSizes},
    {"ShortWrites", FolderFault::kShortWrites},
    {"ZeroWrites", FolderFault::kZeroWrites},
    {"FlushFails", FolderFault::kFlushFails},
    {"SyncFails", FolderFault::kSyncFails},
    {"RenameFails", FolderFault::kRenameFails},
    {"PlainRenameOnly", FolderFault::kPlainRenameOnly},
    {"UnstableInodes", FolderFault::kUnstableInodes},
    {"LettersOfAnyCase", FolderFault::kLettersOfAnyCase},
});

}  // namespace file_systems

#endif  // VELMARCON_TESTS_FILE_SYSTEMS_FOLDER_FAULT_H
