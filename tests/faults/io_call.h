// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_FAULTS_IO_CALL_H
#define VELMARCON_TESTS_FAULTS_IO_CALL_H

#include <optional>
#include <string>

#include "tests/support/traced_program.h"

namespace faults {

/// What a system call does to a file, as far as it matters to how it can fail.
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
    kAttribute,  ///< reads or sets an attribute
    kDuplicate,  ///< makes another descriptor, or asks about one
    kSync,
    kRename,
    kRemove,
    kClose,
};

/// A system call that works on files.
struct IoCall {
    IoKind kind = IoKind::kOpen;
    support::SystemCall call;
    std::string description;  ///< for messages: its name and what it works on
    std::string path;         ///< empty when it works on an open file
};

/// What `call`, at whose entry `program` stands, does to files; nothing when it is about something else.
std::optional<IoCall> AsIoCall(const support::TracedProgram& program, const support::SystemCall& call);

/// Makes a read or write, at whose entry `program` stands, end after about half of its bytes.
void FinishHalf(support::TracedProgram& program, const IoCall& call);

}  // namespace faults

#endif  // VELMARCON_TESTS_FAULTS_IO_CALL_H
