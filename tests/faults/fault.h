// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_FAULTS_FAULT_H
#define VELMARCON_TESTS_FAULTS_FAULT_H

#include <string>
#include <vector>

#include "tests/faults/io_call.h"

namespace faults {

/// One way in which a system call goes wrong.
struct Fault {
    enum class How {
        kRefused,   ///< it fails with `error`, and nothing has happened
        kFinished,  ///< it fails with `error`, but has done its work
        kHalf,      ///< it stops half-way, and says so
        kNothing,   ///< it does nothing, and says so
    };
    How how = How::kRefused;
    int error = 0;

    /// For messages.
    std::string Name() const;
    /// How often in a row it can happen. An interrupted call gets through in the end, and another run's lock
    /// goes.
    int MostTimes() const;
    /// Makes the call, at whose entry `program` stands, go wrong.
    void Inject(support::TracedProgram& program, const IoCall& call) const;
};

/// What can go wrong with calls of this kind.
std::vector<Fault> FaultsOf(IoKind kind);

}  // namespace faults

#endif  // VELMARCON_TESTS_FAULTS_FAULT_H
