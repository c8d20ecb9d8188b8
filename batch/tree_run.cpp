// SPDX-License-Identifier: MIT
#include "batch/tree_run.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "batch/conversion_options.h"
#include "batch/disk_space.h"
#include "batch/dry_run.h"
#include "batch/engine.h"
#include "batch/fields.h"
#include "batch/notification.h"
#include "batch/output_names.h"
#include "batch/passed_over.h"
#include "batch/progress.h"
#include "batch/shown.h"
#include "batch/task_run.h"
#include "batch/told_lines.h"
#include "system/stop_request.h"

using told_lines::Refuse;

namespace {

int TellInterruption(int signal, bool verify) {
    (void)std::fflush(stdout);
    (void)std::fprintf(stderr, "Interrupted (%s). The same command %s.\n", stop_request::Name(signal),
                       verify ? "begins anew" : "resumes from here");
    return batch_status::kSignal + signal;
}

int RefuseUnreached(std::size_t unreached, bool disk_is_full, const std::string& messages_path) {
    if (disk_is_full) {
        return Refuse(batch_status::kSomeFailed, "the disk is full; the same command resumes from here");
    }
    const std::string messages = fields::ReadWhole(messages_path).value_or("");
    constexpr std::size_t last = 500;
    return Refuse(batch_status::kSomeFailed,
                  "not reached: " + NumberOfPictures(unreached) + "; the end of " + messages_path + ":\n" +
                      messages.substr(messages.size() - std::min(messages.size(), last)));
}

}  // namespace

TreeRun::TreeRun(const BatchOptions& options, const std::vector<Tree>& trees, const std::string& list,
                 const Installation& installation, std::string databases)
    : options_(options),
      trees_(trees),
      list_(list),
      installation_(installation),
      databases_(std::move(databases)) {}

int TreeRun::Run() {
    if (options_.dry_run) {
        Search();
        return DryRun(options_, trees_, found_);
    }
    if (const std::string problem = state_.Open(options_, trees_); !problem.empty()) {
        return Refuse(batch_status::kNotBegun, problem);
    }
    Search();
    const int status = Begin();
    return status != batch_status::kDone ? status : WorkAndTell();
}

void TreeRun::Search() {
    found_ = FindPictures(trees_);
    for (const std::string& folder : found_.excluded) {
        std::printf("Not searched, because it is the output folder: %s\n", Shown(folder).c_str());
    }
    if (!options_.list.empty()) {
        found_.not_found = KeepListed(list_, trees_, found_);
    }
    if (options_.newest_first) {
        SortNewestFirst(trees_, found_.pictures);
    }
}

int TreeRun::Begin() {
    if (const std::string names = ProblemOfNames(trees_, found_.pictures); !names.empty()) {
        return Refuse(batch_status::kNotBegun,
                      Shown(names) + " would get the same DNG: the output does not tell their names apart");
    }
    if (const std::string problem = state_.Begin(options_, trees_); !problem.empty()) {
        return Refuse(batch_status::kNotBegun, problem);
    }
    if (const int status = OpenReport(); status != batch_status::kDone) {
        return status;
    }
    if (!options_.hosts.empty()) {
        if (const int status = AskHosts(); status != batch_status::kDone) {
            return status;
        }
    }
    plan_ = MakePlan(options_, trees_, found_.pictures, state_, state_.ledger());
    FindDatabases();
    Announce();
    return CheckSpace();
}

int TreeRun::OpenReport() {
    const std::string problem =
        tally_.Open(state_.PathOf("report"), options_.json, conversion_options::Line(options_.conversion),
                    options_.accept_damaged);
    if (!problem.empty()) {
        return Refuse(batch_status::kNotBegun, problem);
    }
    passed_over::Note(found_, tally_);
    return batch_status::kDone;
}

int TreeRun::AskHosts() {
    const std::string parallel = FindParallel();
    if (parallel.empty()) {
        return Refuse(batch_status::kNotBegun,
                      "--hosts needs GNU parallel (Debian: apt-get install parallel)");
    }
    hosts_ = std::make_unique<Hosts>(state_, parallel, installation_.program);
    bool is_usage = false;
    const std::string problem = hosts_->Ask(options_.hosts, is_usage);
    if (problem.empty()) {
        return batch_status::kDone;
    }
    return Refuse(is_usage ? batch_status::kUsage : batch_status::kNotBegun, problem);
}

/// A DNG is compared with what it was made with, which may have needed more than this run's options do.
void TreeRun::FindDatabases() {
    const bool needed = std::ranges::any_of(plan_.tasks, [](const Task& task) {
        return conversion_options::NeedDatabases(conversion_options::Settings(task.options));
    });
    if (needed && databases_.empty()) {
        databases_ = installation_.databases();
    }
}

void TreeRun::Announce() const {
    told_lines::Say(options_.quiet,
                    NumberOfPictures(found_.pictures.size()) + "; report: " + Shown(state_.PathOf("report")));
    if (plan_.refreshed > 0) {
        told_lines::Say(options_.quiet, "Resuming an interrupted run, which refreshed " +
                                            std::to_string(plan_.refreshed) +
                                            " of them (--fresh converts them all)");
    }
}

int TreeRun::CheckSpace() const {
    const Space space = SpaceFor(plan_.tasks, conversion_options::Settings(options_.conversion).preview);
    if (space.needed == 0) {
        return batch_status::kDone;
    }
    const std::string text = " new DNGs take " + Bytes(space.needed) + "; " + Bytes(space.free) + " are free";
    if (space.enough || options_.anyway) {
        told_lines::Say(options_.quiet, "The" + text);
        return batch_status::kDone;
    }
    return Refuse(batch_status::kNotBegun, "the" + text + ". --anyway begins all the same");
}

WorkerSettings TreeRun::SettingsForWorkers() const {
    return {options_.conversion, databases_,         !options_.no_verify,    options_.rename,
            options_.keep_time,  options_.checksums, options_.accept_damaged};
}

int TreeRun::WorkAndTell() {
    RunOutcome outcome(options_, trees_, found_.pictures, plan_, state_.ledger(), tally_);
    outcome.TakeKept();
    Progress progress(found_.pictures.size(), outcome.settled(), options_.quiet);
    TaskRun work(options_, installation_.program, plan_.tasks, hosts_.get(), state_, outcome, progress);
    if (const int status = work.Run(SettingsForWorkers()); status != batch_status::kDone) {
        return status;
    }
    progress.Clear();
    outcome.PutOnDisk();
    const bool sums_written = outcome.checksums().Write();
    const bool report_written = tally_.Close();
    const RunResult result = {.found = found_,
                              .plan = plan_,
                              .tally = tally_,
                              .outcome = outcome,
                              .report = state_.PathOf("report"),
                              .seconds = progress.Elapsed(),
                              .disk_is_full = work.disk_is_full()};
    TellSummary(result, options_.quiet);
    const int status = End(result, sums_written && report_written);
    if (options_.notify) {
        Notify(std::string(status == batch_status::kDone ? "Done: " : "Ended: ") +
               NumberOfPictures(found_.pictures.size()) + ", " + std::to_string(tally_.failed()) + " failed");
    }
    (void)std::fflush(stdout);
    return status;
}

/// Returns the exit status, and says why the run did not come to its end, if it did not.
int TreeRun::End(const RunResult& result, bool all_written) {
    if (const int signal = stop_request::Signal(); signal != 0) {
        return TellInterruption(signal, options_.verify);
    }
    if (const std::size_t unreached = result.outcome.unreached(); unreached > 0) {
        return RefuseUnreached(unreached, result.disk_is_full, state_.PathOf("messages"));
    }
    state_.End();
    if (found_.pictures.empty()) {
        return passed_over::RefuseNothing();
    }
    const bool all_well = tally_.failed() == 0 && tally_.flawed() == 0 &&
                          passed_over::AllWasFound(found_, options_.accept_damaged) && all_written;
    return all_well ? batch_status::kDone : batch_status::kSomeFailed;
}
