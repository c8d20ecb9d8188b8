// SPDX-License-Identifier: MIT
// Runs a fuzz target without its output and measures the time of each input.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "fuzz/fuzz_target.h"
#include "fuzz/require.h"

namespace {

/// Discards everything that this process prints to standard output from now on.
void SilenceStdout() {
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    Require(nowhere >= 0 && ::dup2(nowhere, STDOUT_FILENO) >= 0, "standard output can be silenced");
    ::close(nowhere);
}

/// Keeps the longest time and prints it to standard error when the process ends.
class SlowestInput {
  public:
    using Clock = std::chrono::steady_clock;

    SlowestInput() = default;
    ~SlowestInput() {
        const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(longest_).count();
        (void)std::fprintf(stderr, "slowest input: %lld ms\n", static_cast<long long>(milliseconds));
    }
    SlowestInput(const SlowestInput&) = delete;
    SlowestInput& operator=(const SlowestInput&) = delete;
    SlowestInput(SlowestInput&&) = delete;
    SlowestInput& operator=(SlowestInput&&) = delete;

    void Add(Clock::duration time) { longest_ = std::max(longest_, time); }

  private:
    Clock::duration longest_ = {};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static SlowestInput slowest;
    static const bool prepared = [] {
        SilenceStdout();
        FuzzInput({});  // the first call sets up the target, outside the measured time
        return true;
    }();
    (void)prepared;
    const auto start = SlowestInput::Clock::now();
    FuzzInput({data, size});
    slowest.Add(SlowestInput::Clock::now() - start);
    return 0;
}
