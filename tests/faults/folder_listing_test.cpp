// SPDX-License-Identifier: MIT
// The listing of a folder breaks off: the program must report that it is incomplete.
#include <algorithm>
#include <cerrno>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/faults/fault.h"
#include "tests/faults/faulty_run.h"
#include "tests/faults/scenario.h"
#include "tests/faults/stage.h"
#include "tests/support/traced_program.h"

namespace faults {

namespace {

class FolderListing : public testing::Test {
  protected:
    void SetUp() override {
        const std::string obstacle = support::TracedProgram::Obstacle();
        if (!obstacle.empty()) {
            GTEST_SKIP() << obstacle;
        }
        const auto calls = RunCleanly(stage_.Run()).calls;
        stage_.Restore();
        for (std::size_t i = 0; i < calls.size(); ++i) {
            if (calls[i].kind == IoKind::kList && calls[i].description.ends_with("/card")) {
                listing_calls_.push_back(i);
            }
        }
        // The last call reports the end of the listing.
        ASSERT_GE(listing_calls_.size(), 2U);
    }

    std::string OutputWithFaultAt(std::size_t call) const {
        return RunWithFaults(stage_.Run(), {call, {Fault::How::kRefused, EIO}, false}).outcome.output;
    }

    static constexpr const char* kReport = "./: folder not read to its end: Input/output error\n";

    Stage stage_{Conversion()};
    std::vector<std::size_t> listing_calls_;
};

TEST_F(FolderListing, ThatBreaksOffIsReportedAndTheListedFilesAreConverted) {
    const std::string output = OutputWithFaultAt(listing_calls_.back());
    EXPECT_TRUE(output.starts_with(kReport)) << output;
    EXPECT_TRUE(stage_.Finished());
}

TEST_F(FolderListing, ThatFailsAtOnceIsReportedBeforeTheErrorThatEndsTheRun) {
    const std::string output = OutputWithFaultAt(listing_calls_.front());
    EXPECT_TRUE(output.starts_with(std::string(kReport) + "Error #0005: ")) << output;
}

}  // namespace

}  // namespace faults
