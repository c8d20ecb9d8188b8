// SPDX-License-Identifier: MIT
#include "batch/tree_run.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <sstream>
#include <thread>
#include <utility>

#include "batch/conversion_options.h"
#include "batch/copy_time.h"
#include "batch/fields.h"
#include "batch/numbered_name.h"
#include "batch/picture_work.h"
#include "batch/proof/checksums.h"
#include "batch/proof/same_picture.h"
#include "batch/shown.h"
#include "system/file_state.h"
#include "system/file_system.h"
#include "system/folder_tools.h"
#include "system/stop_request.h"

namespace {

int Refuse(int status, const std::string& text) {
    (void)std::fflush(stdout);
    (void)std::fprintf(stderr, "velmarcon-batch: %s\n", text.c_str());
    return status;
}

int RefuseNothing() {
    return Refuse(batch_status::kSomeFailed,
                  "no picture found: no RAW file and no camera DNG (extensions in capital letters)");
}

/// What a dry run says of a picture that would have no DNG.
constexpr const char* kWouldFail = "fail";
constexpr const char* kWouldBeRefused = "refuse";

constexpr const char* kOfChangedLength =
    "Camera DNG, but another program has changed its length; name it by itself to velmarcon";

unsigned int Cores() {
    return std::max(std::thread::hardware_concurrency(), 1U);
}

void PrintNamed(const char* what, const std::vector<std::string>& lines, std::size_t all) {
    for (const std::string& line : lines) {
        std::printf("%s: %s\n", what, line.c_str());
    }
    if (all > lines.size()) {
        std::printf("... and %zu more\n", all - lines.size());
    }
}

std::vector<std::string> FirstShown(const std::vector<std::string>& paths) {
    constexpr std::size_t named = 10;
    std::vector<std::string> shown;
    for (std::size_t i = 0; i < std::min(paths.size(), named); ++i) {
        shown.push_back(Shown(paths[i]));
    }
    return shown;
}

}  // namespace

TreeRun::TreeRun(const BatchOptions& options, const std::vector<Tree>& trees, const std::string& list,
                 const Installation& installation, std::string databases)
    : options_(options),
      trees_(trees),
      list_(list),
      installation_(installation),
      databases_(std::move(databases)),
      synchronized_(std::chrono::steady_clock::now()) {}

int TreeRun::Run() {
    if (options_.dry_run) {
        Search();
        return ListPlan();
    }
    if (const std::string problem = state_.Open(options_, trees_); !problem.empty()) {
        return Refuse(batch_status::kNotBegun, problem);
    }
    Search();
    if (const int status = Begin(); status != batch_status::kDone) {
        return status;
    }
    const int status = Work();
    return status != batch_status::kDone ? status : Summarise();
}

void TreeRun::Say(const std::string& text) const {
    if (!options_.quiet) {
        std::printf("%s\n", text.c_str());
        (void)std::fflush(stdout);
    }
}

void TreeRun::Search() {
    found_ = FindPictures(trees_);
    for (const std::string& folder : found_.excluded) {
        std::printf("Not searched, because it is the output folder: %s\n", Shown(folder).c_str());
    }
    if (!options_.list.empty()) {
        not_found_ = KeepListed(list_, trees_, found_);
    }
    if (options_.newest_first) {
        SortNewestFirst(trees_, found_.pictures);
    }
}

std::string TreeRun::InputOfNumber(std::uint64_t number) const {
    return InputOf(found_.pictures[static_cast<std::size_t>(number)], trees_);
}

/// Whether the search could look everywhere, and found all that was asked for.
bool TreeRun::AllWasFound() const {
    return found_.unread.empty() && not_found_.empty() && found_.none.empty() &&
           (options_.accept_damaged ||
            (found_.small.empty() && found_.cut.empty() && found_.of_changed_length.empty()));
}

/// What a run would do, as "convert: INPUT -> DNG".
std::string TreeRun::PlanOf(const Picture& picture) const {
    const std::string input = InputOf(picture, trees_);
    const std::string dng = DngOf(picture, trees_);
    const PictureFiles files({0, TaskMode::kLook, input, dng, "", {}});
    const std::string keep = conversion_options::Settings(options_.conversion).refresh ? "refresh"
                             : input == dng                                            ? kWouldBeRefused
                                                                                       : "keep";
    const auto line = [&](const std::string& what, const std::string& to) {
        return what + ": " + Shown(input) + " -> " + Shown(to);
    };
    const bool is_taken = file_system::IsTaken(dng);
    const auto own = is_taken || options_.rename ? IdentityOf(files) : std::nullopt;
    const auto there = is_taken && input != dng ? IdentityOfDng(dng) : std::nullopt;
    const bool is_others = own && there && *own != *there;
    if (is_others && !options_.rename) {
        return line(kWouldFail, dng) + " (another picture; --rename gives this one another name)";
    }
    if (options_.rename && (is_others || !is_taken)) {
        const NumberedName name = FindNumberedName(dng, own, !files.is_camera_dng);
        if (name.is_own || is_others) {
            return name.dng.empty() ? line(kWouldFail, dng) + " (no name is free for it)"
                                    : line(name.is_own ? keep : "convert", name.dng);
        }
    }
    return line(is_taken ? keep : "convert", dng);
}

/// Returns the status that a run would end with for what is seen here.
int TreeRun::ListPlan() const {
    bool all_well = AllWasFound();
    for (const Picture& picture : found_.pictures) {
        const std::string plan = PlanOf(picture);
        all_well = all_well && !plan.starts_with(kWouldFail) && !plan.starts_with(kWouldBeRefused);
        std::printf("%s\n", plan.c_str());
    }
    TellNearMisses();
    Say(NumberOfPictures(found_.pictures.size()));
    PrintNamed("Could not be read", found_.unread, 0);
    if (found_.pictures.empty()) {
        return RefuseNothing();
    }
    return all_well ? batch_status::kDone : batch_status::kSomeFailed;
}

WorkerSettings TreeRun::SettingsForWorkers() const {
    return {options_.conversion, databases_,         !options_.no_verify,    options_.rename,
            options_.keep_time,  options_.checksums, options_.accept_damaged};
}

int TreeRun::Begin() {
    if (const std::string names = ProblemOfNames(trees_, found_.pictures); !names.empty()) {
        return Refuse(batch_status::kNotBegun,
                      Shown(names) + " would get the same DNG: the output does not tell their names apart");
    }
    if (const std::string problem = state_.Begin(options_, trees_); !problem.empty()) {
        return Refuse(batch_status::kNotBegun, problem);
    }
    if (const std::string problem =
            tally_.Open(state_.PathOf("report"), options_.json, conversion_options::Line(options_.conversion),
                        options_.accept_damaged);
        !problem.empty()) {
        return Refuse(batch_status::kNotBegun, problem);
    }
    for (const std::string& folder : found_.excluded) {
        tally_.Note("not searched, because it is the output folder: " + Shown(folder));
    }
    for (const std::string& path : found_.small) {
        tally_.Note("ignored, not in capital letters: " + Shown(path));
    }
    for (const std::string& path : found_.cut) {
        tally_.Note("too short for a camera DNG: " + Shown(path));
    }
    for (const std::string& path : found_.of_changed_length) {
        tally_.Note(std::string(kOfChangedLength) + ": " + Shown(path));
    }
    for (const std::string& path : found_.jpegs) {
        tally_.Note("JPEG without a RAW file: " + Shown(path));
    }
    if (found_.of_macos > 0) {
        tally_.Note("ignored, files of macOS (._*): " + std::to_string(found_.of_macos));
    }
    if (!options_.hosts.empty()) {
        if (const int status = AskHosts(); status != batch_status::kDone) {
            return status;
        }
    }
    plan_ = MakePlan(options_, trees_, found_.pictures, state_, state_.ledger());
    settled_.resize(found_.pictures.size());
    FindDatabases();
    Announce();
    return CheckSpace();
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
    Say(NumberOfPictures(found_.pictures.size()) + "; report: " + Shown(state_.PathOf("report")));
    if (plan_.refreshed > 0) {
        Say("Resuming an interrupted run, which refreshed " + std::to_string(plan_.refreshed) +
            " of them (--fresh converts them all)");
    }
}

int TreeRun::CheckSpace() const {
    const Space space = SpaceFor(plan_.tasks, conversion_options::Settings(options_.conversion).preview);
    if (space.needed == 0) {
        return batch_status::kDone;
    }
    const std::string text =
        "the new DNGs take " + Bytes(space.needed) + "; " + Bytes(space.free) + " are free";
    if (space.enough || options_.anyway) {
        Say("T" + text.substr(1));
        return batch_status::kDone;
    }
    return Refuse(batch_status::kNotBegun, text + ". --anyway begins all the same");
}

void TreeRun::TakeKept() {
    for (std::size_t i = 0; i < plan_.kept.size(); ++i) {
        Record record;
        record.verdict = Verdict::kKept;
        record.picture = plan_.kept[i];
        record.flaws = plan_.flaws[i];
        record.sha256 = plan_.sums[i];
        record.dng = DngOf(found_.pictures[static_cast<std::size_t>(record.picture)], trees_);
        settled_[static_cast<std::size_t>(record.picture)] = true;
        ++done_;
        if (options_.keep_time && CopyTime(InputOfNumber(record.picture), record.dng)) {
            auto entry = state_.ledger().Find(record.dng).value_or(LedgerEntry());
            entry.dng_state = FullStateText(record.dng);
            (void)state_.ledger().Add(record.dng, entry);
        }
        tally_.Take(record, InputOfNumber(record.picture));
    }
}

/// Pictures that a worker died over are not tried again; those that it did not come to are.
int TreeRun::Work() {
    TakeKept();
    progress_ = std::make_unique<Progress>(found_.pictures.size(), done_, options_.quiet);
    record_files_ = std::make_unique<RecordFiles>(state_.PathOf("records"));
    for (std::size_t i = 0; i < plan_.tasks.size(); ++i) {
        task_of_[plan_.tasks[i].picture] = i;
    }
    if (jobs::WriteSettings(jobs::SettingsOf(state_.folder()), SettingsForWorkers())) {
        return Refuse(batch_status::kNotBegun, "nothing can be written to " + Shown(state_.folder()));
    }
    if (!plan_.tasks.empty()) {
        if (const int status = hosts_ ? WorkOnHosts() : WorkHere(); status != batch_status::kDone) {
            return status;
        }
    }
    progress_->Clear();
    PutOnDisk();
    return batch_status::kDone;
}

std::vector<const Task*> TreeRun::TasksLeft() const {
    std::vector<const Task*> left;
    for (const Task& task : plan_.tasks) {
        if (!settled_[static_cast<std::size_t>(task.picture)]) {
            left.push_back(&task);
        }
    }
    return left;
}

std::uint64_t TreeRun::WriteJobs(const std::vector<const Task*>& tasks, unsigned int at_a_time) {
    constexpr std::size_t most = 64;
    constexpr std::size_t jobs_each = 4;  // so that all end at about the same time
    const std::size_t per_job =
        std::clamp<std::size_t>(tasks.size() / (std::size_t{at_a_time} * jobs_each), 1, most);
    for (std::size_t at = 0; at < tasks.size(); at += per_job) {
        std::vector<Task> job;
        for (const Task* task : std::span(tasks).subspan(at, std::min(per_job, tasks.size() - at))) {
            job.push_back(*task);
        }
        if (jobs::Write(jobs::FileOf(state_.folder(), next_job_++), job)) {
            return 0;
        }
    }
    return next_job_ - 1;
}

int TreeRun::WorkHere() {
    std::vector<const Task*> left = TasksLeft();
    const unsigned int at_a_time = options_.jobs > 0 ? options_.jobs : Cores();
    const std::string parallel = at_a_time > 1 && left.size() > 1 ? FindParallel() : "";
    if (at_a_time > 1 && left.size() > 1 && parallel.empty()) {
        Say("One picture after the other: GNU parallel is not installed");
    }
    while (!left.empty()) {
        const std::uint64_t first = next_job_;
        const std::uint64_t last = WriteJobs(left, parallel.empty() ? 1 : at_a_time);
        if (last == 0) {
            return Refuse(batch_status::kNotBegun, "nothing can be written to " + Shown(state_.folder()));
        }
        Engine engine(parallel.empty() ? WorkersInTurn(installation_.program, state_, first, last)
                                       : std::vector{WorkersByParallel(parallel, installation_.program,
                                                                       state_, first, last, at_a_time)});
        if (const int status = Drive(engine); status != batch_status::kDone) {
            return status;
        }
        BlameTheDead();
        const std::size_t before = left.size();
        left = TasksLeft();
        if (left.size() == before || disk_full_ || stop_request::Signal() != 0) {
            break;
        }
    }
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

/// What is decided by a look at the files that are here needs no other machine.
int TreeRun::WorkOnHosts() {
    std::vector<Task> look;
    for (Task task : plan_.tasks) {
        if (file_system::IsTaken(task.dng) || !task.input.ends_with(".RAW")) {
            task.mode = task.mode == TaskMode::kConvert ? TaskMode::kLook : task.mode;
            look.push_back(std::move(task));
        }
    }
    if (!look.empty()) {
        const std::uint64_t first = next_job_;
        std::vector<const Task*> tasks;
        std::ranges::transform(look, std::back_inserter(tasks), [](const Task& task) { return &task; });
        const std::uint64_t last = WriteJobs(tasks, 1);
        Engine engine(WorkersInTurn(installation_.program, state_, first, last));
        if (const int status = last == 0 ? batch_status::kNotBegun : Drive(engine);
            status != batch_status::kDone) {
            return status;
        }
        BlameTheDead();
    }
    std::vector<Task> left;
    for (const Task* task : TasksLeft()) {
        left.push_back(*task);
    }
    int status = batch_status::kDone;
    if (!left.empty() && stop_request::Signal() == 0) {
        const std::uint64_t last = hosts_->LayOut(SettingsForWorkers(), left, next_job_);
        if (last == 0) {
            return Refuse(batch_status::kNotBegun, "nothing can be written to " + Shown(state_.folder()));
        }
        next_job_ = last + 1;
        std::vector<ChildStart> starts;
        starts.push_back(hosts_->Start());
        Engine engine(std::move(starts));
        status = Drive(engine);
        begun_.clear();
    }
    hosts_->CleanUp();
    return status;
}

/// Until the engine has ended, or a signal or a full disk asks it to.
int TreeRun::Drive(Engine& engine) {
    constexpr unsigned int often = 100;
    bool at_work = true;
    while (at_work) {
        at_work = engine.Wait(often);
        TakeRecords();
        if (const int signal = stop_request::Signal(); signal != 0 && !told_stop_) {
            told_stop_ = true;
            progress_->Clear();
            (void)std::fprintf(stderr, "Stopping (%s): pictures that were begun are finished first\n",
                               stop_request::Name(signal));
        }
        if (stop_request::Signal() != 0 || disk_full_) {
            engine.AskToEnd();
        } else {
            progress_->Show(done_, seen_failed_);
        }
    }
    progress_->Clear();
    return engine.error().empty() ? batch_status::kDone : Refuse(batch_status::kNotBegun, engine.error());
}

void TreeRun::TakeRecords() {
    for (Record& record : record_files_->TakeNew()) {
        if (record.picture < settled_.size() && !settled_[static_cast<std::size_t>(record.picture)]) {
            TakeRecord(std::move(record));
        }
    }
    constexpr std::size_t group = 500;
    constexpr auto interval = std::chrono::seconds(60);
    const bool is_late = std::chrono::steady_clock::now() - synchronized_ > interval;
    if (pending_.size() >= group || (is_late && !pending_.empty())) {
        PutOnDisk();
    }
}

void TreeRun::TakeRecord(Record record) {
    const auto task = task_of_.find(record.picture);
    if (record.verdict == Verdict::kBegun || task == task_of_.end()) {
        begun_.insert(record.picture);
        return;
    }
    begun_.erase(record.picture);
    if (record.verdict == Verdict::kDiskFull) {
        disk_full_ = true;
        return;
    }
    if (hosts_) {
        const bool refresh = conversion_options::Settings(options_.conversion).refresh;
        hosts_->TakeOver(plan_.tasks[task->second], refresh, options_.keep_time, record);
    }
    settled_[static_cast<std::size_t>(record.picture)] = true;
    ++done_;
    const Task& done = plan_.tasks[task->second];
    if (record.verdict == Verdict::kFailed) {
        ++seen_failed_;
        Doubt(record, done.input);
        Settle(record);
        return;
    }
    const bool was_made = record.verdict == Verdict::kConverted;
    const std::vector<std::string> made_with = OptionsOf(record, done);
    if (!was_made && (done.mode != TaskMode::kVerify || !options_.conversion.empty())) {
        plan_.CountOptions(made_with, options_.conversion);
    }
    LedgerEntry entry = EntryOf(record, done.input, made_with);
    if (was_made && options_.no_verify) {
        entry.fingerprint.clear();  // another machine needs one for the way
    }
    (void)state_.ledger().Add(record.dng, entry);
    pending_.push_back(std::move(record));
}

/// Whatever its file looks like, the DNG is compared in later runs, too, until it is as it must be.
void TreeRun::Doubt(const Record& record, const std::string& input) {
    auto entry = state_.ledger().Find(record.dng);
    const bool is_known = entry && entry->source == input;
    if (!is_known && record.made_with.starts_with(kDiffers)) {
        entry = EntryOf(record, input, UnknownOptions());
    } else if (!is_known) {
        return;
    }
    entry->on_disk = false;
    (void)state_.ledger().Add(record.dng, *entry);
}

/// Those that the DNG was made with, as far as that is known.
std::vector<std::string> TreeRun::OptionsOf(const Record& record, const Task& done) const {
    if (record.verdict == Verdict::kConverted) {
        return options_.conversion;
    }
    if (record.made_with.starts_with(kAsSupposed)) {
        return done.options;
    }
    if (record.made_with.starts_with(kGuessed)) {
        std::istringstream words(record.made_with.substr(1));
        return {std::istream_iterator<std::string>(words), std::istream_iterator<std::string>()};
    }
    const auto known = state_.ledger().Find(record.dng);
    return known && known->source == done.input ? known->options : UnknownOptions();
}

/// Whoever deletes originals after this run must not lose the DNGs to a power cut. What the disk did not take
/// is not there, whatever the system's memory still holds of it.
void TreeRun::PutOnDisk() {
    std::vector<std::string> files;
    files.reserve(pending_.size());
    for (const Record& record : pending_) {
        files.push_back(record.dng);
    }
    const std::vector<std::error_code> errors = stop_request::Signal() == 0
                                                    ? folder_tools::PutOnDisk(files)
                                                    : std::vector<std::error_code>(files.size());
    for (std::size_t i = 0; i < pending_.size(); ++i) {
        Record& record = pending_[i];
        if (errors[i]) {
            const std::string reason = ErrorText(errors[i]);
            if (record.verdict == Verdict::kConverted && record.dng != InputOfNumber(record.picture)) {
                file_system::Remove(record.dng);
            }
            (void)state_.ledger().Remove(record.dng);
            record.verdict = Verdict::kFailed;
            record.text = "the system could not write its DNG to the disk: " + reason;
            record.kind = "not on the disk: " + reason;
            ++not_on_disk_;
        } else if (auto entry = state_.ledger().Find(record.dng); entry && stop_request::Signal() == 0) {
            entry->on_disk = true;
            (void)state_.ledger().Add(record.dng, *entry);
        }
        Settle(record);
    }
    pending_.clear();
    synchronized_ = std::chrono::steady_clock::now();
}

void TreeRun::Settle(const Record& record) {
    const std::string input = InputOfNumber(record.picture);
    tally_.Take(record, input);
    if (record.verdict != Verdict::kFailed &&
        NameIn(record.dng) != WithoutExtension(NameIn(input)) + ".DNG") {
        renamed_.push_back(Shown(input) + " -> " + Shown(NameIn(record.dng)));
        tally_.Note("renamed: " + renamed_.back());
    }
    // The line of a DNG that was replaced is outdated.
    if (record.verdict == Verdict::kConverted ||
        (!record.sha256.empty() && record.verdict == Verdict::kKept)) {
        sums_[FolderIn(record.dng)][NameIn(record.dng)] = record.sha256;
    }
}

/// A worker that was killed, by the system for want of memory or by a fault of its own, was at work on a
/// picture.
void TreeRun::BlameTheDead() {
    if (stop_request::Signal() != 0 || disk_full_) {
        return;
    }
    for (const std::uint64_t number : std::set(begun_)) {
        Record record;
        record.verdict = Verdict::kFailed;
        record.picture = number;
        record.text = "the worker was killed or crashed while it was at work on this picture";
        record.kind = "the worker was killed or crashed";
        settled_[static_cast<std::size_t>(number)] = true;
        ++done_;
        ++seen_failed_;
        Settle(record);
    }
    begun_.clear();
}

std::size_t TreeRun::Unreached() const {
    return static_cast<std::size_t>(std::ranges::count(settled_, false));
}

void TreeRun::WriteChecksumFiles() {
    for (const auto& [folder, sums] : sums_) {
        Checksums all;
        int error = ReadChecksums(folder, all);
        const Checksums before = all;
        for (const auto& [name, sum] : sums) {
            all[name] = sum;
        }
        std::erase_if(all, [](const auto& line) { return line.second.empty(); });
        if (error == 0 && all.empty() && !before.empty()) {
            file_system::Remove(folder + "SHA256SUMS");
        } else if (error == 0 && all != before) {
            error = WriteChecksums(folder, all);
        }
        if (error != 0) {
            report_written_ = false;
            (void)std::fprintf(stderr, "velmarcon-batch: %sSHA256SUMS cannot be written: %s\n",
                               Shown(folder).c_str(), ErrorText({error, std::generic_category()}).c_str());
        }
    }
}

void TreeRun::TellRenamed() const {
    constexpr std::size_t named = 10;
    if (!options_.quiet) {
        const auto end = renamed_.begin() + static_cast<std::ptrdiff_t>(std::min(renamed_.size(), named));
        PrintNamed("Renamed", {renamed_.begin(), end}, renamed_.size());
    }
}

void TreeRun::TellRemarks() const {
    if (options_.quiet || tally_.remarked() == 0) {
        return;
    }
    Say(std::to_string(tally_.remarked()) + " with a remark: see " + Shown(state_.PathOf("report")));
    PrintNamed("Remark", tally_.remarks(), tally_.remarked());
}

void TreeRun::TellFailures() const {
    PrintNamed("Damaged", tally_.flaws(), tally_.flawed());
    PrintNamed("Failed", tally_.failures(), tally_.failed());
    if (tally_.failed() > 1 && !options_.quiet) {
        for (const auto& [kind, number] : tally_.kinds()) {
            std::printf("%zu failed: %s\n", number, kind.c_str());
        }
    }
}

void TreeRun::TellNearMisses() const {
    PrintNamed("Ignored, not in capital letters", FirstShown(found_.small), found_.small.size());
    if (found_.of_macos > 0) {
        std::printf("Ignored, files of macOS (._*): %zu\n", found_.of_macos);
    }
    PrintNamed("Too short for a camera DNG", FirstShown(found_.cut), found_.cut.size());
    PrintNamed(kOfChangedLength, FirstShown(found_.of_changed_length), found_.of_changed_length.size());
    PrintNamed("No picture", FirstShown(found_.none), found_.none.size());
    PrintNamed("In the list, but no picture of the folders", FirstShown(not_found_), not_found_.size());
    TellJpegs();
}

/// They may be all that the camera was asked for.
void TreeRun::TellJpegs() const {
    const std::size_t number = found_.jpegs.size();
    if (number > 0 && !options_.quiet) {
        Say(number == 1 ? "1 JPEG has no RAW file next to it"
                        : std::to_string(number) + " JPEGs have no RAW file next to them");
        PrintNamed("JPEG without a RAW file", FirstShown(found_.jpegs), number);
    }
}

/// The count stands last.
void TreeRun::TellEnd() {
    constexpr double moment = 0.05;
    const std::size_t worked = tally_.converted();
    const double elapsed = progress_ ? progress_->Elapsed() : 0;
    if (plan_.other_options > 0) {
        Say(std::to_string(plan_.other_options) + " already there, made with other options (" +
            plan_.options_of_others + "); -r makes them anew");
    }
    if (worked > 0 && elapsed > moment) {
        char each[32] = {};  // NOLINT(modernize-avoid-c-arrays)
        (void)std::snprintf(each, sizeof(each), "%.1f", static_cast<double>(worked) / elapsed);
        Say(Duration(elapsed) + ", " + each + " pictures a second");
    }
    std::string line = NumberOfPictures(found_.pictures.size()) + ": " + std::to_string(tally_.converted()) +
                       " converted, " + std::to_string(tally_.kept()) + " already there, " +
                       std::to_string(tally_.failed()) + " failed";
    if (const std::size_t unreached = Unreached(); unreached > 0) {
        line += ", " + std::to_string(unreached) + (disk_full_ ? " not done" : " not reached");
    }
    if (const std::size_t flawed = tally_.flawed(); flawed > 0) {
        line += "; " + std::to_string(flawed) + (flawed == 1 ? " of these is" : " of these are") + " damaged";
    }
    Say(line);
}

int TreeRun::TellUnreached(std::size_t unreached) const {
    if (disk_full_) {
        return Refuse(batch_status::kSomeFailed, "the disk is full; the same command resumes from here");
    }
    const std::string messages = fields::ReadWhole(state_.PathOf("messages")).value_or("");
    constexpr std::size_t last = 500;
    return Refuse(batch_status::kSomeFailed,
                  "not reached: " + NumberOfPictures(unreached) + "; the end of " +
                      state_.PathOf("messages") + ":\n" +
                      messages.substr(messages.size() - std::min(messages.size(), last)));
}

int TreeRun::Summarise() {
    WriteChecksumFiles();
    report_written_ = tally_.Close() && report_written_;
    TellNearMisses();
    TellRenamed();
    TellRemarks();
    TellFailures();
    if (!found_.unread.empty()) {
        std::printf("Not all folders could be read:\n");
        for (const std::string& line : found_.unread) {
            std::printf("%s\n", Shown(line).c_str());
        }
    }
    TellEnd();
    int status = batch_status::kDone;
    if (const int signal = stop_request::Signal(); signal != 0) {
        (void)std::fflush(stdout);
        (void)std::fprintf(stderr, "Interrupted (%s). The same command %s.\n", stop_request::Name(signal),
                           options_.verify ? "begins anew" : "resumes from here");
        status = batch_status::kSignal + signal;
    } else if (const std::size_t unreached = Unreached(); unreached > 0) {
        status = TellUnreached(unreached);
    } else {
        state_.End();
        const bool all_well =
            tally_.failed() == 0 && tally_.flawed() == 0 && AllWasFound() && report_written_;
        status = all_well ? batch_status::kDone : batch_status::kSomeFailed;
        if (found_.pictures.empty()) {
            status = RefuseNothing();
        }
    }
    Notify(status);
    (void)std::fflush(stdout);
    return status;
}

void TreeRun::Notify(int status) const {
    if (!options_.notify) {
        return;
    }
    ChildStart start;
    start.arguments = {"notify-send", "velmarcon-batch",
                       std::string(status == 0 ? "Done: " : "Ended: ") +
                           NumberOfPictures(found_.pictures.size()) + ", " + std::to_string(tally_.failed()) +
                           " failed"};
    std::string printed;
    (void)RunForOutput(start, printed);
}
