// SPDX-License-Identifier: MIT
#include "tests/faults/fault.h"

#include <cerrno>
#include <cstring>
#include <limits>

namespace faults {

namespace {

std::vector<Fault> Refusals(std::initializer_list<int> errors) {
    std::vector<Fault> faults;
    for (const int error : errors) {
        faults.push_back({Fault::How::kRefused, error});
    }
    return faults;
}

std::vector<Fault> With(std::vector<Fault> faults, const Fault& another) {
    faults.push_back(another);
    return faults;
}

}  // namespace

std::string Fault::Name() const {
    switch (how) {
        case How::kHalf:
            return "half done";
        case How::kNothing:
            return "nothing done";
        case How::kFinished:
            return std::string(::strerrorname_np(error)) + " after it was done";
        default:
            return ::strerrorname_np(error);
    }
}

int Fault::MostTimes() const {
    constexpr int passing = 20;
    return error == EINTR || error == EWOULDBLOCK ? passing : std::numeric_limits<int>::max();
}

void Fault::Inject(support::TracedProgram& program, const IoCall& call) const {
    switch (how) {
        case How::kHalf:
            return FinishHalf(program, call);
        case How::kNothing:
            return program.FinishCallWith(2, 0);
        case How::kFinished:
            return program.FailFinishedCall(error);
        default:
            return program.FailCall(error);
    }
}

std::vector<Fault> FaultsOf(IoKind kind) {
    using How = Fault::How;
    switch (kind) {
        case IoKind::kOpen:
            return Refusals({EACCES, EIO, EINTR, EMFILE});
        case IoKind::kCreate:
            return Refusals({EACCES, EIO, EINTR, ENOSPC});
        case IoKind::kRead:
            return With(Refusals({EIO, EINTR}), {How::kHalf});
        case IoKind::kWrite:
            return With(With(Refusals({ENOSPC, EIO, EINTR}), {How::kHalf}), {How::kNothing});
        case IoKind::kPrint:
            return With(Refusals({ENOSPC, EIO, EINTR}), {How::kHalf});
        case IoKind::kStatus:
        case IoKind::kAccess:
        case IoKind::kLink:
            return Refusals({EACCES, EIO, EINTR});
        case IoKind::kSeek:
        case IoKind::kList:
            return Refusals({EIO, EINTR});
        case IoKind::kLock:
            return Refusals({EWOULDBLOCK, ENOLCK, EINTR});
        case IoKind::kOwner:
            return Refusals({EPERM, EIO, EINTR});
        case IoKind::kAttribute:
            return Refusals({EACCES, EIO, ENOSPC, EINTR});
        case IoKind::kDuplicate:
            return Refusals({EMFILE, EINTR});
        case IoKind::kSync:
            return Refusals({ENOSPC, EIO, EINTR});
        case IoKind::kRename:
            return With(Refusals({EACCES, EINVAL, EIO, ENOSPC, EINTR}), {How::kFinished, EIO});
        case IoKind::kRemove:
            return Refusals({EACCES, EIO, EINTR});
        case IoKind::kClose:  // the descriptor is released regardless of the result
            return {{How::kFinished, EIO}, {How::kFinished, ENOSPC}, {How::kFinished, EINTR}};
    }
    return {};
}

}  // namespace faults
