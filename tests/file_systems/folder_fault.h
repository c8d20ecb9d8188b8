// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_FILE_SYSTEMS_FOLDER_FAULT_H
#define VELMARCON_TESTS_FILE_SYSTEMS_FOLDER_FAULT_H

#include <array>
#include <cstdint>
#include <string_view>

namespace file_systems {

/// What is odd about a file system.
enum class FolderFault : std::uint8_t {
    kNone,
    kShortSizes,        ///< each file's length is told one byte short
    kLongSizes,         ///< each file's length is told one byte long
    kShortWrites,       ///< a write takes half of what it is given
    kZeroWrites,        ///< a write takes nothing, and gives no error
    kFlushFails,        ///< closing a file that was written fails
    kSyncFails,         ///< what was written can't be brought to the disk
    kRenameFails,       ///< no name can be changed
    kPlainRenameOnly,   ///< a rename replaces what has the name; there are no hard links
    kUnstableInodes,    ///< each look at a file gives another inode number
    kLettersOfAnyCase,  ///< "A" and "a" are one name
};

struct NamedFault {
    std::string_view name;
    FolderFault fault;
};

/// Each fault by the name that faulty_folder takes.
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
