// SPDX-License-Identifier: MIT
#include "tests/matrix/judge.h"

#include "tests/matrix/known_output.h"
#include "tests/matrix/mapped_file.h"
#include "tests/support/dng_check.h"

namespace matrix {

namespace {

constexpr double kMostSeconds = 2;
constexpr long kMostKilobytes = 96L * 1024;

std::string FaultOfEnding(const Ending& ending, const Said& said) {
    if (ending.signal != 0) {
        return "ended by signal " + std::to_string(ending.signal) + ": " + ending.errors;
    }
    if (!ending.errors.empty()) {
        return "output on standard error: " + ending.errors;
    }
    if (!said.unknown.empty()) {
        return "unknown output line: " + said.unknown;
    }
    if (ending.status != said.status) {
        return "exit status " + std::to_string(ending.status) + " with \"" + said.message + "\"";
    }
    if (ending.cpu_seconds > kMostSeconds) {
        return "took " + std::to_string(ending.cpu_seconds) + " s of CPU time";
    }
    if (ending.peak_kilobytes > kMostKilobytes) {
        return "took " + std::to_string(ending.peak_kilobytes) + " KiB of memory";
    }
    return "";
}

std::string FaultOfResult(const Case& one, const CaseFolder& folder, const KnownPixels& known) {
    const MappedFile file(folder.Result());
    support::RawStrip raw;
    if (std::string fault = support::FaultOfDng(file.bytes(), raw); !fault.empty()) {
        return "the DNG: " + fault;
    }
    if (one.pixels == Pixels::kKnown && !known.Include(one.options->kind, one.options->correction,
                                                       file.bytes().subspan(raw.offset, raw.size))) {
        return "the DNG: unexpected raw image";
    }
    return "";
}

}  // namespace

Verdict Judge(const Case& one, const Files& files, const Ending& ending, const CaseFolder& folder,
              const KnownPixels& known) {
    const Said said = Understand(ending.output, one.options->kind);
    Verdict verdict = {FaultOfEnding(ending, said), said.failed || said.status != 0 ? said.message : "DNG"};
    const bool result = verdict.outcome == "DNG";
    if (verdict.fault.empty()) {
        verdict.fault = folder.FaultAfter(*one.options, files, result, said.new_database);
    }
    if (verdict.fault.empty() && result) {
        verdict.fault = FaultOfResult(one, folder, known);
    }
    return verdict;
}

}  // namespace matrix
