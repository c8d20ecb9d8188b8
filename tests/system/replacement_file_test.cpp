// SPDX-License-Identifier: MIT
#include "system/replacement_file.h"

#include <sys/resource.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/descriptor_limit.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/files.h"
#include "tests/system/replace.h"

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;
using Existing = ReplacementFile::Existing;
using namespace std::string_view_literals;

TEST(ReplacementFile, TakesItsNameOnlyWhenItIsCommitted) {
    const support::TempFolder folder;
    {
        ReplacementFile file;
        ASSERT_EQ(file.Open(folder / "L1.DNG", Existing::kReplace).value(), 0);
        file.Write("new"sv);
        EXPECT_TRUE(file.IsGood());
        EXPECT_FALSE(fs::exists(folder / "L1.DNG"));
        EXPECT_EQ(file.Commit(3).value(), 0);
        EXPECT_EQ(Content(folder / "L1.DNG"), "new");
    }
    EXPECT_EQ(support::Names(folder.path()), Names{"L1.DNG"});
}

TEST(ReplacementFile, AnExistingFileIsUntouchedUntilCommit) {
    const support::TempFolder folder;
    support::WriteFile(folder / "L1.DNG", "old and longer");
    ReplacementFile file;
    ASSERT_EQ(file.Open(folder / "L1.DNG", Existing::kReplace).value(), 0);
    file.Write("new"sv);
    EXPECT_EQ(Content(folder / "L1.DNG"), "old and longer");
    EXPECT_EQ(file.Commit(3).value(), 0);
    EXPECT_EQ(Content(folder / "L1.DNG"), "new");
    EXPECT_EQ(support::Names(folder.path()), Names{"L1.DNG"});
}

TEST(ReplacementFile, WithoutAFreeDescriptorLeavesNothing) {
    const support::TempFolder folder;
    support::WriteFile(folder / "L1.DNG", "old");
    for (const unsigned int descriptors :
         {0U, 1U}) {  // none at all; one for the part file, but none to detect a full disk
        ReplacementFile file;
        const support::DescriptorLimit limit(descriptors);
        const int error = file.Open(folder / "L1.DNG", Existing::kReplace).value();
        EXPECT_EQ(error != 0 ? error : file.Commit(0).value(), EMFILE);
    }
    EXPECT_EQ(Content(folder / "L1.DNG"), "old");
    EXPECT_EQ(support::Names(folder.path()), Names{"L1.DNG"});
}

TEST(ReplacementFile, WithoutCommitNothingIsLeft) {
    const support::TempFolder folder;
    support::WriteFile(folder / "L1.DNG", "old");
    {
        ReplacementFile file;
        ASSERT_EQ(file.Open(folder / "L1.DNG", Existing::kReplace).value(), 0);
        file.Write("new"sv);
        EXPECT_EQ(support::Names(folder.path()).size(), 2U);
    }
    EXPECT_EQ(support::Names(folder.path()), Names{"L1.DNG"});
    EXPECT_EQ(Content(folder / "L1.DNG"), "old");
}

TEST(ReplacementFile, WhileItIsWrittenNoSearchForImagesFindsIt) {
    const support::TempFolder folder;
    ReplacementFile file;
    ASSERT_EQ(file.Open(folder / "L1.DNG", Existing::kReplace).value(), 0);
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
            ASSERT_EQ(file.Open(folder / "L1.DNG", Existing::kReplace).value(), 0);
            file.Write("new"sv);
            EXPECT_EQ(file.Commit(size).value(), EIO) << size;
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

TEST(ReplacementFile, AMissingFolderOrAFolderInItsPlaceIsAnError) {
    const support::TempFolder folder;
    fs::create_directory(folder / "L1.DNG");
    EXPECT_EQ(Replace(folder / "missing/L1.DNG", "new"), ENOENT);
    EXPECT_EQ(ReplacementFile().Open(folder / "L1.DNG", Existing::kReplace).value(), EISDIR);
    EXPECT_EQ(support::Names(folder.path()), Names{"L1.DNG"});
}

TEST(ReplacementFile, ANameThatCannotBeTakenLeavesNothing) {
    const support::TempFolder folder;
    {
        ReplacementFile file;
        ASSERT_EQ(file.Open(folder / "L1.DNG", Existing::kReplace).value(), 0);
        file.Write("new"sv);
        fs::create_directory(folder / "L1.DNG");
        EXPECT_EQ(file.Commit(3).value(), EISDIR);
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

/// Writes L1.DNG in `folder` to a full disk, which has room again before Commit if `room` is set. Returns the
/// result of Commit.
int CommitOntoFullDisk(const support::TempFolder& folder, bool room) {
    ReplacementFile file;
    const support::FileSizeLimit limit(1000);
    EXPECT_EQ(file.Open(folder / "L1.DNG", Existing::kReplace).value(), 0);
    file.Write(std::string(1001, 'x'));
    EXPECT_FALSE(file.IsGood());
    if (!room) {
        return file.Commit(1001).value();
    }
    const support::FileSizeLimit no_limit(RLIM_INFINITY);
    errno = EINTR;  // a later error does not change the reason
    file.Write("x"sv);
    EXPECT_FALSE(file.IsGood());
    return file.Commit(1001).value();
}

TEST(ReplacementFile, AFailedWriteIsReportedAndLeavesTheOldFile) {
    for (const bool room : {false, true}) {
        const support::TempFolder folder;
        support::WriteFile(folder / "L1.DNG", "old");
        EXPECT_EQ(CommitOntoFullDisk(folder, room), EFBIG) << room;
        EXPECT_EQ(support::Names(folder.path()), Names{"L1.DNG"});
        EXPECT_EQ(Content(folder / "L1.DNG"), "old");
    }
}

TEST(ReplacementFile, OfTwoThatKeepExistingFilesOneGetsTheName) {
    const support::TempFolder folder;
    ReplacementFile first;
    ReplacementFile second;
    ASSERT_EQ(first.Open(folder / "L1.DNG", Existing::kKeep).value(), 0);
    ASSERT_EQ(second.Open(folder / "L1.DNG", Existing::kKeep).value(), 0);
    first.Write("first"sv);
    second.Write("second"sv);
    EXPECT_EQ(second.Commit(6).value(), 0);
    EXPECT_EQ(first.Commit(5).value(), EEXIST);
    EXPECT_EQ(Content(folder / "L1.DNG"), "second");
}

TEST(ReplacementFile, AnythingWithItsNameIsKeptIfAsked) {
    const support::TempFolder folder;
    support::WriteFile(folder / "file", "old");
    fs::create_symlink("nowhere", folder / "link");
    for (const char* name : {"file", "link"}) {
        EXPECT_EQ(Replace(folder / name, "new", Existing::kKeep), EEXIST) << name;
    }
    EXPECT_EQ(support::Names(folder.path()), (Names{"file", "link"}));
    EXPECT_EQ(Content(folder / "file"), "old");
}

/// Writes a file, calls `put`, which creates something with its name before Commit, and expects that this is
/// kept.
void ExpectKept(const std::function<void(const std::string& path)>& put) {
    const support::TempFolder folder;
    const std::string path = folder / "L1.DNG";
    {
        ReplacementFile file;
        ASSERT_EQ(file.Open(path, Existing::kKeep).value(), 0);
        file.Write("new"sv);
        put(path);
        EXPECT_EQ(file.Commit(3).value(), EEXIST);
    }
    EXPECT_NE(fs::symlink_status(path).type(), fs::file_type::not_found);
    EXPECT_EQ(support::Names(folder.path()), Names{"L1.DNG"});
    EXPECT_TRUE(!fs::is_regular_file(path) || Content(path) == "theirs");
}

TEST(ReplacementFile, AnythingThatGetsItsNameMeanwhileIsKeptIfAsked) {
    ExpectKept([](const std::string& path) { support::WriteFile(path, "theirs"); });
    ExpectKept([](const std::string& path) { fs::create_symlink("nowhere", path); });
    ExpectKept([](const std::string& path) { fs::create_directory(path); });
}

TEST(ReplacementFile, APartFileThatWasReplacedDoesNotGetTheName) {
    const support::TempFolder folder;
    for (const bool gone : {false, true}) {
        ReplacementFile file;
        ASSERT_EQ(file.Open(folder / "L1.DNG", Existing::kReplace).value(), 0);
        file.Write("new"sv);
        const Names names = support::Names(folder.path());
        ASSERT_EQ(names.size(), 1U);
        fs::remove(folder / names[0]);
        if (!gone) {
            support::WriteFile(folder / names[0], "another picture");
        }
        EXPECT_EQ(file.Commit(3).value(), gone ? ENOENT : ESTALE);
    }
    EXPECT_EQ(support::Names(folder.path()), Names());
}

}  // namespace
