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

/// A temporary folder, in memory if there is plenty of it; removed at the end.
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

/// How a run ended.
struct RunEnd {
    support::Outcome outcome;
    bool killed = false;
    bool silent = false;          ///< whether its output may be lost
    bool may_leave_part = false;  ///< whether it could not remove its part file or took it for another run's
    bool obstacle_lasts = false;  ///< whether a later run would meet the same obstacle
};

/// The folders of a scenario, and the expected results of a run.
class Stage {
  public:
    explicit Stage(Scenario scenario);

    /// The command of the scenario, with additional arguments.
    Command Run(const std::vector<std::string>& more = {}) const;

    const Scenario& scenario() const { return scenario_; }
    std::string Path(const std::string& file) const { return (scratch_.path() / file).string(); }

    /// Restores the state before the run.
    void Restore();

    /// Restores an input that the test itself has changed.
    void RestoreInput(const std::string& path);

    /// The violations after a run that ended as `end` says, one line each. Unless everything is as before the
    /// run or as after a run without faults, the program is run once more to see whether it completes the
    /// work.
    std::vector<std::string> Violations(const RunEnd& end);

    /// Whether everything is as after a run without faults.
    bool Finished() const;
    /// Whether `target` is as after a run without faults.
    bool IsMade(const std::string& target) const { return StateOf(target) == State::kNew; }

  private:
    enum class State { kOld, kNew, kLess, kBroken };
    struct Result {
        std::optional<Bytes> old;
        Bytes made;
        std::optional<Bytes> less;  ///< the result without the dispensable input
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
    std::map<std::string, struct stat> inputs_;  ///< their original status
    std::set<std::string> before_;               ///< all files before the run
    std::set<std::string> after_;                ///< all files after a run without faults
};

}  // namespace faults

#endif  // VELMARCON_TESTS_FAULTS_STAGE_H
