// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_POWERCUT_TRIAL_H
#define VELMARCON_TESTS_POWERCUT_TRIAL_H

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "tests/powercut/block_device.h"
#include "tests/powercut/crash_point.h"
#include "tests/powercut/disk_memory.h"
#include "tests/powercut/file_system.h"
#include "tests/powercut/scenario.h"
#include "tests/powercut/verdict.h"

namespace powercut {

/// Counts the states in which the files of a scenario were found, once per file and crash point.
struct Tally {
    std::size_t points = 0;
    std::size_t bad_points = 0;             ///< with a violation
    std::map<State, std::size_t> replaced;  ///< kAbsent means that no `.old` file has the old bytes either
    std::map<State, std::size_t> made;
    std::size_t needed_check = 0;  ///< readable only after a repair by the file system's own check
    /// Replaced files whose old bytes were only in an `.old` file until the next run.
    std::size_t put_back = 0;
    std::map<State, std::size_t> after_further_run;  ///< of the replaced files
    std::vector<std::string> violations;
};

/// One scenario on one file system: runs it once and records all writes, then examines what power cuts leave.
class Trial {
  public:
    Trial(const FileSystem& file_system, Scenario scenario, std::string program);

    /// The number of writes and flushes from the start of the runs until the disk was unmounted.
    std::size_t Requests() const { return log_.size() - start_; }
    /// The number of writes and flushes before the runs.
    std::size_t Start() const { return start_; }

    /// Examines the disk after a power cut and counts the states of its files. With `checked`, the file
    /// system's own check repairs the disk first; otherwise only if something cannot be read without it.
    void Cut(const CrashPoint& point, bool checked, Tally& tally) const;

  private:
    void Prepare() const;
    void Record();
    std::string RunAll(const std::vector<std::vector<std::string>>& runs) const;
    void LookAfter(const CrashPoint& point, bool checked, Tally& tally) const;
    void Look(const std::string& where, Tally& tally) const;
    void GoOn(const std::string& where, Tally& tally) const;
    void Judge(const std::string& where, Tally& tally) const;
    void JudgeReplaced(const File& file, const std::string& where, Tally& tally) const;

    FileSystem file_system_;
    Scenario scenario_;
    std::string program_;
    DiskMemory disk_;
    WriteLog log_;
    std::size_t start_ = 0;
    std::map<std::string, Bytes> results_;  ///< the files that the runs wrote
};

}  // namespace powercut

#endif  // VELMARCON_TESTS_POWERCUT_TRIAL_H
