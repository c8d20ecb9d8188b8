// SPDX-License-Identifier: MIT
#include "tests/faults/faulty_run.h"

#include <sys/stat.h>
#include <sys/syscall.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>

namespace faults {

namespace {

/// Executes the call, which queries the type of a file system, and changes the answer.
void ClaimFat(support::TracedProgram& program, const support::SystemCall& call) {
    constexpr std::array<std::uint8_t, 4> fat = {0x44, 0x4D, 0, 0};  // at the beginning of the answer
    if (program.FinishCall()) {
        program.WriteMemory(call.arguments[1], fat);
    }
}

/// Executes the call, which queries a file, and changes the inode number in the answer.
void Renumber(support::TracedProgram& program, const support::SystemCall& call, std::uint64_t inode) {
    std::array<std::uint8_t, sizeof(ino_t)> bytes = {};
    std::memcpy(bytes.data(), &inode, bytes.size());
    const std::size_t answer = call.number == SYS_fstat ? 1 : 2;
    if (program.FinishCall()) {
        program.WriteMemory(call.arguments.at(answer) + offsetof(struct stat, st_ino), bytes);
    }
}

}  // namespace

IoRun::IoRun(const Command& command)
    : program_(command.program, command.arguments, {.folder = command.folder, .name = command.name}),
      watched_(command.watched),
      on_fat_(command.on_fat),
      renumbers_(command.renumbers) {}

/// Executes the call and falsifies its answer if the run asks for that; otherwise returns false.
bool IoRun::Falsifies(const support::SystemCall& call) {
    if (on_fat_ && call.number == SYS_statfs) {
        ClaimFat(program_, call);
        return true;
    }
    if (renumbers_ && (call.number == SYS_newfstatat || call.number == SYS_fstat)) {
        Renumber(program_, call, next_inode_++);
        return true;
    }
    return false;
}

std::optional<IoCall> IoRun::NextCall() {
    while (const auto call = program_.NextCall()) {
        if (Falsifies(*call)) {
            continue;
        }
        auto io = AsIoCall(program_, *call);
        begun_ = begun_ || (io && io->path.starts_with(watched_));
        if (io && begun_) {
            return io;
        }
    }
    return std::nullopt;
}

void IoRun::Finish() {
    if (!on_fat_ && !renumbers_) {
        program_.Finish();
    }
    while (NextCall()) {
    }
}

CleanRun RunCleanly(const Command& command) {
    CleanRun result;
    IoRun run(command);
    while (const auto call = run.NextCall()) {
        result.calls.push_back(*call);
    }
    result.outcome = run.program().outcome();
    return result;
}

std::size_t FirstAfterReading(const std::vector<IoCall>& calls) {
    const auto writing = std::ranges::find(calls, IoKind::kCreate, &IoCall::kind);
    const auto last = std::find_if(std::make_reverse_iterator(writing), calls.rend(),
                                   [](const IoCall& call) { return call.kind == IoKind::kRead; });
    return static_cast<std::size_t>(calls.rend() - last);
}

FaultyOutcome RunWithFaults(const Command& command, const Plan& plan) {
    FaultyOutcome result;
    std::optional<IoKind> kind;
    IoRun run(command);
    for (std::size_t i = 0; const auto call = run.NextCall(); ++i) {
        if (i == plan.call) {
            kind = call->kind;
        }
        if (call->kind != kind) {
            continue;
        }
        plan.fault.Inject(run.program(), *call);
        ++result.injected;
        result.printing_failed = result.printing_failed || *kind == IoKind::kPrint;
        result.part_abandoned =
            result.part_abandoned || *kind == IoKind::kRemove || plan.fault.error == EWOULDBLOCK;
        if (!plan.repeated || result.injected == plan.fault.MostTimes()) {
            break;
        }
    }
    run.Finish();
    result.outcome = run.program().outcome();
    return result;
}

bool RunUntilKill(const Command& command, std::size_t call, bool half) {
    IoRun run(command);
    for (std::size_t i = 0; const auto io = run.NextCall(); ++i) {
        if (i == call) {
            if (half) {
                FinishHalf(run.program(), *io);
            }
            run.program().Kill();
            return true;
        }
    }
    return false;
}

}  // namespace faults
