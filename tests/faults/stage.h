// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_FAULTS_STAGE_H
#define VELMARCON_TESTS_FAULTS_STAGE_H

#include <sys/stat.h>

#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/faults/faulty_run.h"
#include "tests/faults/scenario.h"
#include "tests/support/program.h"

namespace faults {

/// A folder in memory where there is plenty of it, else where other temporary files are. Gone in the end.
class Scratch {
  public:
    Scratch();
    ~Scratch();
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    Scratch(Scratch&&) = delete;
    Scratch& operator=(Scratch&&) = delete;

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

/// How a run came to its end.
struct RunEnd {
    support::Outcome outcome;
    bool killed = false;
    bool silent = false;          ///< what it printed may be lost
    bool may_leave_part = false;  ///< it could not remove its part, or thought it another run's
    bool obstacle_lasts = false;  ///< a later run would meet the same one
};

/// The folders of a scenario, and what a run may make of them.
class Stage {
  public:
    explicit Stage(Scenario scenario);

    /// The run, with further arguments.
    Command Run(const std::vector<std::string>& more = {}) const;

    const Scenario& scenario() const { return scenario_; }
    std::string Path(const std::string& file) const { return (scratch_.path() / file).string(); }

    /// Makes everything as it was before the run.
    void Restore();

    /// Puts an input back that the test itself has changed.
    void RestoreInput(const std::string& path);

    /// What is wrong after a run that ended so, one line each; empty: nothing. Runs the program once more to
    /// see whether that mends what may be left, unless everything is as before or as after a run without
    /// faults.
    std::vector<std::string> Violations(const RunEnd& end);

    /// Whether everything is as after a run without faults.
    bool Finished() const;
    /// Whether `target` is what a run without faults makes of it.
    bool IsMade(const std::string& target) const { return StateOf(target) == State::kNew; }

  private:
    enum class State { kOld, kNew, kLess, kBroken };
    struct Result {
        std::optional<Bytes> old;
        Bytes made;
        std::optional<Bytes> less;  ///< without the dispensable input
    };

    bool IsReplaced(const std::string& target) const;
    bool IsAside(const std::string& file) const;
    bool IsNeeded(const std::string& aside, const RunEnd& end) const;
    void Place(const File& file) const;
    void LearnResults();
    State StateOf(const std::string& target) const;
    std::set<std::string> Files() const;
    bool Untouched() const;
    std::vector<std::string> Judge(const RunEnd& end) const;
    std::vector<std::string> JudgeTargets(const RunEnd& end) const;
    std::vector<std::string> JudgeFiles(const RunEnd& end) const;

    Scenario scenario_;
    Scratch scratch_;
    std::map<std::string, Result> results_;      ///< by target
    std::map<std::string, struct stat> inputs_;  ///< as they were at first
    std::set<std::string> before_;               ///< all files, before the run
    std::set<std::string> after_;                ///< and after one without faults
};

}  // namespace faults

#endif  // VELMARCON_TESTS_FAULTS_STAGE_H
