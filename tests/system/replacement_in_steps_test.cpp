// SPDX-License-Identifier: MIT
#include "system/replacement_in_steps.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "system/file_system.h"
#include "tests/support/files.h"
#include "tests/system/replace.h"

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

/// A folder with L1.DNG and the part that is to replace it.
class InSteps : public testing::Test {
  protected:
    void SetUp() override {
        support::WriteFile(dng_, "old");
        support::WriteFile(part_, "new");
        descriptor_ = ::open(part_.c_str(), O_RDWR | O_CLOEXEC);
    }
    void TearDown() override { ::close(descriptor_); }

    support::TempFolder folder_;
    std::string dng_ = folder_ / "L1.DNG";
    std::string part_ = folder_ / "part";
    int descriptor_ = -1;
};

TEST_F(InSteps, TheNewFileTakesTheNameAndNothingElseIsLeft) {
    EXPECT_EQ(replacement_in_steps::Replace(descriptor_, part_, dng_), 0);
    EXPECT_EQ(Content(dng_), "new");
    EXPECT_EQ(support::Names(folder_.path()), Names{"L1.DNG"});
}

TEST_F(InSteps, AFileOfTheOldOnesNameIsNotTouched) {
    support::WriteFile(dng_ + ".old", "precious");
    EXPECT_EQ(replacement_in_steps::Replace(descriptor_, part_, dng_), 0);
    EXPECT_EQ(Content(dng_), "new");
    EXPECT_EQ(Content(dng_ + ".old"), "precious");
    EXPECT_EQ(support::Names(folder_.path()), (Names{"L1.DNG", "L1.DNG.old"}));
}

TEST_F(InSteps, WithoutAFreeNameTheOldFileStays) {
    for (const char* end : {".old", ".old2", ".old3", ".old4", ".old5", ".old6", ".old7", ".old8", ".old9"}) {
        support::WriteFile(dng_ + end, "precious");
    }
    EXPECT_EQ(replacement_in_steps::Replace(descriptor_, part_, dng_), EEXIST);
    EXPECT_EQ(Content(dng_), "old");
    EXPECT_EQ(Content(part_), "new");
}

TEST_F(InSteps, AFailedStepGivesTheOldFileItsNameAgain) {
    EXPECT_EQ(replacement_in_steps::Replace(-1, part_, dng_), EBADF);  // nothing can be brought to the disk
    EXPECT_EQ(Content(dng_), "old");
    EXPECT_EQ(replacement_in_steps::Replace(descriptor_, folder_ / "missing", dng_), ENOENT);
    EXPECT_EQ(Content(dng_), "old");
    EXPECT_EQ(support::Names(folder_.path()), (Names{"L1.DNG", "part"}));
}

TEST_F(InSteps, WhatSteppedAsideOnAJournalingFileSystemIsNotPutBack) {
    if (file_system::LosesReplacedFiles(folder_.path())) {
        GTEST_SKIP() << "this file system keeps no journal";
    }
    fs::rename(dng_, dng_ + ".old");
    EXPECT_FALSE(replacement_in_steps::PutBack(dng_));
    EXPECT_EQ(support::Names(folder_.path()), (Names{"L1.DNG.old", "part"}));
}

}  // namespace
