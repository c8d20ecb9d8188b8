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

/// How often the files of a scenario were found in which state, each file at each crash point counted once.
struct Tally {
    std::size_t points = 0;
    std::size_t bad_points = 0;  ///< with a violation
    std::map<State, std::size_t>
        replaced;  ///< with kAbsent: neither this nor an `.old` file has the old bytes
    std::map<State, std::size_t> made;
    std::size_t needed_check = 0;  ///< could be read only when the file system's own check had repaired it
    std::size_t put_back = 0;  ///< replaced files whose old bytes only an `.old` file had, until the next run
    std::map<State, std::size_t> after_further_run;  ///< of the replaced files
    std::vector<std::string> violations;
};

/// One scenario on one file system: run once while all writes are noted, then looked at as power cuts leave
/// it.
class Trial {
  public:
    Trial(const FileSystem& file_system, Scenario scenario, std::string program);

    /// How many writes and flushes there were from the start of the runs until the disk was unmounted.
    std::size_t Requests() const { return log_.size() - start_; }
    /// Those before the runs.
    std::size_t Start() const { return start_; }

    /// Looks at the disk after a power cut, and counts what is there. With `checked` the file system's own
    /// check repairs it before; otherwise only if something could not be read without that.
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
    std::map<std::string, Bytes> results_;  ///< what the runs left in the files that they write
};

}  // namespace powercut

#endif  // VELMARCON_TESTS_POWERCUT_TRIAL_H
