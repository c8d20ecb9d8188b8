// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_FAULTS_FAULT_H
#define VELMARCON_TESTS_FAULTS_FAULT_H

#include <string>
#include <vector>

#include "tests/faults/io_call.h"

namespace faults {

/// One way in which a system call can fail.
struct Fault {
    enum class How {
        kRefused,   ///< it fails with `error` and has no effect
        kFinished,  ///< it has its effect, but fails with `error`
        kHalf,      ///< it stops half-way and reports that
        kNothing,   ///< it does nothing and reports that
    };
    How how = How::kRefused;
    int error = 0;

    /// For messages.
    std::string Name() const;
    /// How often in a row the fault can happen. An interrupted call succeeds in the end, and a lock is
    /// released in the end.
    int MostTimes() const;
    /// Makes the call, at whose entry `program` is stopped, fail.
    void Inject(support::TracedProgram& program, const IoCall& call) const;
};

/// The faults that calls of this kind can have.
std::vector<Fault> FaultsOf(IoKind kind);

}  // namespace faults

#endif  // VELMARCON_TESTS_FAULTS_FAULT_H
