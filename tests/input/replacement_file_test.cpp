// SPDX-License-Identifier: MIT
#include "input/replacement_file.h"

#include <sys/resource.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tests/input/replace.h"
#include "tests/support/descriptor_limit.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/files.h"

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

TEST(ReplacementFile, TakesItsNameOnlyWhenItIsCommitted) {
    const support::TempFolder folder;
    {
        ReplacementFile file;
        ASSERT_EQ(file.Open(folder / "L1.DNG"), 0);
        file.stream() << "new";
        EXPECT_TRUE(file.Good());
        EXPECT_FALSE(fs::exists(folder / "L1.DNG"));
        EXPECT_EQ(file.Commit(3), 0);
        EXPECT_EQ(Content(folder / "L1.DNG"), "new");
    }
    EXPECT_EQ(support::Names(folder.path()), Names{"L1.DNG"});
}

TEST(ReplacementFile, AnExistingFileIsUntouchedUntilCommit) {
    const support::TempFolder folder;
    support::WriteFile(folder / "L1.DNG", "old and longer");
    ReplacementFile file;
    ASSERT_EQ(file.Open(folder / "L1.DNG"), 0);
    file.stream() << "new" << std::flush;
    EXPECT_EQ(Content(folder / "L1.DNG"), "old and longer");
    EXPECT_EQ(file.Commit(3), 0);
    EXPECT_EQ(Content(folder / "L1.DNG"), "new");
    EXPECT_EQ(support::Names(folder.path()), Names{"L1.DNG"});
}

TEST(ReplacementFile, WhoseTextCannotBeWrittenForLackOfDescriptorsLeavesNothing) {
    const support::TempFolder folder;
    support::WriteFile(folder / "L1.DNG", "old");
    {
        ReplacementFile file;
        const support::DescriptorLimit limit(1);  // for the part, but not for the stream into it
        EXPECT_EQ(file.Open(folder / "L1.DNG"), EMFILE);
    }
    EXPECT_EQ(Content(folder / "L1.DNG"), "old");
    EXPECT_EQ(support::Names(folder.path()), Names{"L1.DNG"});
}

TEST(ReplacementFile, WithoutCommitNothingIsLeft) {
    const support::TempFolder folder;
    support::WriteFile(folder / "L1.DNG", "old");
    {
        ReplacementFile file;
        ASSERT_EQ(file.Open(folder / "L1.DNG"), 0);
        file.stream() << "new" << std::flush;
        EXPECT_EQ(support::Names(folder.path()).size(), 2U);
    }
    EXPECT_EQ(support::Names(folder.path()), Names{"L1.DNG"});
    EXPECT_EQ(Content(folder / "L1.DNG"), "old");
}

TEST(ReplacementFile, WhileItIsWrittenNoSearchForImagesFindsIt) {
    const support::TempFolder folder;
    ReplacementFile file;
    ASSERT_EQ(file.Open(folder / "L1.DNG"), 0);
    const Names names = support::Names(folder.path());
    ASSERT_EQ(names.size(), 1U);
    EXPECT_EQ(names[0].front(), '.');
    for (const std::string_view extension : {"RAW", "JPG", "BIA", "DNG", "ini"}) {
        EXPECT_FALSE(names[0].ends_with(extension));
    }
}

TEST(ReplacementFile, AWrongSizeIsRefused) {
    for (const std::uint64_t size : {0U, 2U, 4U}) {
        const support::TempFolder folder;
        support::WriteFile(folder / "L1.DNG", "old");
        {
            ReplacementFile file;
            ASSERT_EQ(file.Open(folder / "L1.DNG"), 0);
            file.stream() << "new";
            EXPECT_EQ(file.Commit(size), EIO) << size;
        }
        EXPECT_EQ(support::Names(folder.path()), Names{"L1.DNG"});
        EXPECT_EQ(Content(folder / "L1.DNG"), "old");
    }
}

TEST(ReplacementFile, AnEmptyFileCanBeWritten) {
    const support::TempFolder folder;
    EXPECT_EQ(Replace(folder / "L1.DNG", ""), 0);
    EXPECT_EQ(Content(folder / "L1.DNG"), "");
}

TEST(ReplacementFile, AMissingFolderOrAFolderInItsPlaceIsTheSystemsError) {
    const support::TempFolder folder;
    fs::create_directory(folder / "L1.DNG");
    EXPECT_EQ(Replace(folder / "missing/L1.DNG", "new"), ENOENT);
    EXPECT_EQ(ReplacementFile().Open(folder / "L1.DNG"), EISDIR);
    EXPECT_EQ(support::Names(folder.path()), Names{"L1.DNG"});
}

TEST(ReplacementFile, ANameThatCannotBeTakenLeavesNothing) {
    const support::TempFolder folder;
    {
        ReplacementFile file;
        ASSERT_EQ(file.Open(folder / "L1.DNG"), 0);
        file.stream() << "new";
        fs::create_directory(folder / "L1.DNG");
        EXPECT_EQ(file.Commit(3), EISDIR);
    }
    EXPECT_EQ(support::Names(folder.path()), Names{"L1.DNG"});
}

TEST(ReplacementFile, ANameWithoutAFolderIsInTheCurrentOne) {
    const support::TempFolder folder;
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    const int result = Replace("L1.DNG", "new");
    fs::current_path(before);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(support::Names(folder.path()), Names{"L1.DNG"});
}

/// Writes L1.DNG of `folder` onto a full disk. When the write is noticed to fail before the file is closed
/// (`flush`), there is room again when it is. Returns what Commit does.
int CommitOntoFullDisk(const support::TempFolder& folder, bool flush) {
    ReplacementFile file;
    const support::FileSizeLimit limit(1000);
    EXPECT_EQ(file.Open(folder / "L1.DNG"), 0);
    file.stream() << std::string(1001, 'x');
    if (!flush) {
        return file.Commit(1001);
    }
    file.stream().flush();
    EXPECT_FALSE(file.Good());
    const support::FileSizeLimit room(RLIM_INFINITY);
    errno = EINTR;  // what happens later does not change the reason
    EXPECT_FALSE(file.Good());
    return file.Commit(1001);
}

TEST(ReplacementFile, AFailedWriteIsReportedAndLeavesTheOldFile) {
    for (const bool flush : {false, true}) {
        const support::TempFolder folder;
        support::WriteFile(folder / "L1.DNG", "old");
        EXPECT_EQ(CommitOntoFullDisk(folder, flush), EFBIG) << flush;
        EXPECT_EQ(support::Names(folder.path()), Names{"L1.DNG"});
        EXPECT_EQ(Content(folder / "L1.DNG"), "old");
    }
}

}  // namespace
