// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_FAULTS_IO_CALL_H
#define VELMARCON_TESTS_FAULTS_IO_CALL_H

#include <optional>
#include <string>

#include "tests/support/traced_program.h"

namespace faults {

/// What a system call does to a file, in categories that can fail in the same ways.
enum class IoKind {
    kOpen,
    kCreate,
    kRead,
    kWrite,
    kPrint,  ///< a write to standard output
    kSeek,
    kStatus,
    kAccess,
    kLink,  ///< reads a symbolic link
    kList,  ///< reads a folder
    kLock,
    kOwner,      ///< sets owner or mode
    kAttribute,  ///< reads or sets an extended attribute
    kDuplicate,  ///< duplicates or queries a descriptor
    kSync,
    kRename,
    kRemove,
    kClose,
};

/// A system call that works on files.
struct IoCall {
    IoKind kind = IoKind::kOpen;
    support::SystemCall call;
    std::string description;  ///< for messages: its name and its file
    std::string path;         ///< empty if it works on an open file
};

/// The file call that `program` is about to make with `call`; std::nullopt if `call` does not work on files.
std::optional<IoCall> AsIoCall(const support::TracedProgram& program, const support::SystemCall& call);

/// Executes a read or write, at whose entry `program` is stopped, with only about half of its bytes.
void FinishHalf(support::TracedProgram& program, const IoCall& call);

}  // namespace faults

#endif  // VELMARCON_TESTS_FAULTS_IO_CALL_H
