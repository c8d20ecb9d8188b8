// SPDX-License-Identifier: MIT
#include "system/replacement_in_steps.h"

#include <fcntl.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "system/file_system.h"
#include "system/handle.h"
#include "tests/support/files.h"
#include "tests/system/replace.h"

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

/// A folder with L1.DNG and the part file that is to replace it.
class InSteps : public testing::Test {
  protected:
    void SetUp() override {
        support::WriteFile(dng_, "old");
        fs::last_write_time(dng_, fs::file_time_type::clock::now() - std::chrono::hours(1));
        support::WriteFile(part_, "new");
        file_ = Handle(::open(part_.c_str(), O_RDWR | O_CLOEXEC));
    }

    support::TempFolder folder_;
    std::string dng_ = folder_ / "L1.DNG";
    std::string part_ = folder_ / "part";
    Handle file_;
};

TEST_F(InSteps, TheNewFileTakesTheNameAndNothingElseIsLeft) {
    EXPECT_EQ(replacement_in_steps::Replace(file_, part_, dng_).value(), 0);
    EXPECT_EQ(Content(dng_), "new");
    EXPECT_EQ(support::Names(folder_.path()), Names{"L1.DNG"});
}

TEST_F(InSteps, AFileWithTheNameOfTheCopyIsNotTouched) {
    support::WriteFile(dng_ + ".old", "precious");
    EXPECT_EQ(replacement_in_steps::Replace(file_, part_, dng_).value(), 0);
    EXPECT_EQ(Content(dng_), "new");
    EXPECT_EQ(Content(dng_ + ".old"), "precious");
    EXPECT_EQ(support::Names(folder_.path()), (Names{"L1.DNG", "L1.DNG.old"}));
}

TEST_F(InSteps, WithoutAFreeNameTheOldFileStays) {
    for (const char* end : {".old", ".old2", ".old3", ".old4", ".old5", ".old6", ".old7", ".old8", ".old9"}) {
        support::WriteFile(dng_ + end, "precious");
    }
    EXPECT_EQ(replacement_in_steps::Replace(file_, part_, dng_).value(), EEXIST);
    EXPECT_EQ(Content(dng_), "old");
    EXPECT_EQ(Content(part_), "new");
}

TEST_F(InSteps, WithoutANewFileTheOldOneStays) {
    EXPECT_EQ(replacement_in_steps::Replace(file_, folder_ / "missing", dng_).value(), ENOENT);
    EXPECT_EQ(Content(dng_), "old");
    EXPECT_EQ(support::Names(folder_.path()), (Names{"L1.DNG", "part"}));
}

TEST_F(InSteps, ACopyStaysWhenTheNewFileMayNotBeOnTheDisk) {
    EXPECT_EQ(replacement_in_steps::Replace(Handle(), part_, dng_).value(), EBADF);
    EXPECT_EQ(Content(dng_), "new");
    EXPECT_EQ(Content(dng_ + ".old"), "old");
    EXPECT_EQ(support::Names(folder_.path()), (Names{"L1.DNG", "L1.DNG.old"}));
}

TEST_F(InSteps, TheCopyIsCompleteAndHasTheModeOfTheOldFile) {
    const std::string bytes(3'000'001, 'x');
    support::WriteFile(dng_, bytes);
    constexpr auto mode = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
    fs::permissions(dng_, mode);
    EXPECT_EQ(replacement_in_steps::Replace(Handle(), part_, dng_).value(), EBADF);
    EXPECT_EQ(Content(dng_ + ".old"), bytes);
    EXPECT_EQ(fs::status(dng_ + ".old").permissions(), mode);
}

TEST_F(InSteps, AFileThatCannotBeCopiedIsNotReplaced) {
    fs::remove(dng_);
    fs::create_directory(dng_);
    EXPECT_NE(replacement_in_steps::Replace(file_, part_, dng_).value(), 0);
    EXPECT_EQ(support::Names(folder_.path()), (Names{"L1.DNG", "part"}));
    EXPECT_EQ(Content(part_), "new");
}

TEST_F(InSteps, ACopyOnAJournalingFileSystemIsNotPutBack) {
    if (file_system::LosesReplacedFiles(folder_.path())) {
        GTEST_SKIP() << "this file system keeps no journal";
    }
    fs::rename(dng_, dng_ + ".old");
    EXPECT_FALSE(replacement_in_steps::PutBack(dng_));
    EXPECT_EQ(support::Names(folder_.path()), (Names{"L1.DNG.old", "part"}));
}

}  // namespace
