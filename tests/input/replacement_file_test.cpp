// SPDX-License-Identifier: MIT
#include "input/replacement_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/files.h"

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

std::string Content(const std::string& path) {
    const auto bytes = support::ReadFile(path);
    return {bytes.begin(), bytes.end()};
}

/// Writes `text` as `path` and gives it its name. Returns the first error number, or 0.
int Replace(const std::string& path, std::string_view text) {
    ReplacementFile file;
    if (const int error = file.Open(path); error != 0) {
        return error;
    }
    file.stream() << text;
    return file.Commit(text.size());
}

mode_t ModeOf(const std::string& path) {
    struct stat status = {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status.st_mode & mode_t{07777};
}

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

/// Lets no file grow beyond `bytes` while it lives, as a full disk would.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit = {std::min(bytes, before_.rlim_max), before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        (void)std::signal(SIGXFSZ, handler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    FileSizeLimit(FileSizeLimit&&) = delete;
    FileSizeLimit& operator=(FileSizeLimit&&) = delete;

  private:
    rlimit before_ = {};
    void (*handler_)(int);
};

/// Writes L1.DNG of `folder` onto a full disk. When the write is noticed to fail before the file is closed
/// (`flush`), there is room again when it is. Returns what Commit does.
int CommitOntoFullDisk(const support::TempFolder& folder, bool flush) {
    ReplacementFile file;
    const FileSizeLimit limit(1000);
    EXPECT_EQ(file.Open(folder / "L1.DNG"), 0);
    file.stream() << std::string(1001, 'x');
    if (!flush) {
        return file.Commit(1001);
    }
    file.stream().flush();
    EXPECT_FALSE(file.Good());
    const FileSizeLimit room(RLIM_INFINITY);
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

TEST(ReplacementFile, ASymbolicLinkStaysAndItsTargetIsReplaced) {
    const support::TempFolder folder;
    fs::create_directory(folder / "card");
    support::WriteFile(folder / "card/real", "old");
    fs::create_symlink("card/real", folder / "relative");
    fs::create_symlink(folder / "relative", folder / "absolute");
    EXPECT_EQ(Replace(folder / "absolute", "new"), 0);
    EXPECT_EQ(Content(folder / "card/real"), "new");
    EXPECT_FALSE(fs::is_symlink(folder / "card/real"));
    EXPECT_EQ(fs::read_symlink(folder / "relative"), "card/real");
    EXPECT_EQ(fs::read_symlink(folder / "absolute"), folder / "relative");
    EXPECT_EQ(support::Names(folder / "card"), Names{"real"});
}

TEST(ReplacementFile, ALinkThatPointsNowhereGetsItsTarget) {
    const support::TempFolder folder;
    fs::create_symlink("real", folder / "link");
    EXPECT_EQ(Replace(folder / "link", "new"), 0);
    EXPECT_EQ(Content(folder / "real"), "new");
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
}

TEST(ReplacementFile, LinksInACircleAreTheSystemsError) {
    const support::TempFolder folder;
    fs::create_symlink("b", folder / "a");
    fs::create_symlink("a", folder / "b");
    EXPECT_EQ(Replace(folder / "a", "new"), ELOOP);
    EXPECT_EQ(support::Names(folder.path()), (Names{"a", "b"}));
}

TEST(ReplacementFile, TheModeOfAReplacedFileIsKept) {
    for (const mode_t mode : {0600U, 0640U, 0755U}) {
        const support::TempFolder folder;
        support::WriteFile(folder / "L1.DNG", "old");
        ASSERT_EQ(::chmod((folder / "L1.DNG").c_str(), mode), 0);
        EXPECT_EQ(Replace(folder / "L1.DNG", "new"), 0);
        EXPECT_EQ(ModeOf(folder / "L1.DNG"), mode);
    }
}

TEST(ReplacementFile, ANewFileHasTheModeThatTheUsersMaskAllows) {
    const support::TempFolder folder;
    const mode_t mask = ::umask(027);
    const int result = Replace(folder / "L1.DNG", "new");
    ::umask(mask);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(ModeOf(folder / "L1.DNG"), mode_t{0640});
}

TEST(ReplacementFile, ThePartOfAKilledRunIsTakenOver) {
    const support::TempFolder folder;
    support::WriteFile(folder / ".velmarcon-0.part", "half of a file that was being written");
    EXPECT_EQ(Replace(folder / "L1.DNG", "new"), 0);
    EXPECT_EQ(support::Names(folder.path()), Names{"L1.DNG"});
    EXPECT_EQ(Content(folder / "L1.DNG"), "new");
}

/// A part that another run is writing.
class LockedPart {
  public:
    explicit LockedPart(const std::string& path)
        : descriptor_(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
        EXPECT_EQ(::write(descriptor_, "theirs", 6), 6);
        EXPECT_EQ(::flock(descriptor_, LOCK_EX | LOCK_NB), 0);
    }
    ~LockedPart() { ::close(descriptor_); }
    LockedPart(const LockedPart&) = delete;
    LockedPart& operator=(const LockedPart&) = delete;
    LockedPart(LockedPart&&) = delete;
    LockedPart& operator=(LockedPart&&) = delete;

  private:
    int descriptor_;
};

TEST(ReplacementFile, APartThatAnotherRunIsWritingIsNotTouched) {
    const support::TempFolder folder;
    const LockedPart theirs(folder / ".velmarcon-0.part");
    EXPECT_EQ(Replace(folder / "L1.DNG", "new"), 0);
    EXPECT_EQ(Content(folder / ".velmarcon-0.part"), "theirs");
    EXPECT_EQ(Content(folder / "L1.DNG"), "new");
    EXPECT_EQ(support::Names(folder.path()), (Names{".velmarcon-0.part", "L1.DNG"}));
}

TEST(ReplacementFile, TwoRunsInOneFolderDoNotMeet) {
    const support::TempFolder folder;
    ReplacementFile first;
    ReplacementFile second;
    ASSERT_EQ(first.Open(folder / "L1.DNG"), 0);
    ASSERT_EQ(second.Open(folder / "L2.DNG"), 0);
    first.stream() << "first";
    second.stream() << "second";
    EXPECT_EQ(first.Commit(5), 0);
    EXPECT_EQ(second.Commit(6), 0);
    EXPECT_EQ(Content(folder / "L1.DNG"), "first");
    EXPECT_EQ(Content(folder / "L2.DNG"), "second");
    EXPECT_EQ(support::Names(folder.path()), (Names{"L1.DNG", "L2.DNG"}));
}

TEST(ReplacementFile, ALinkInThePartsPlaceIsNotFollowed) {
    const support::TempFolder folder;
    support::WriteFile(folder / "other", "precious");
    fs::create_symlink("other", folder / ".velmarcon-0.part");
    EXPECT_NE(Replace(folder / "L1.DNG", "new"), 0);
    EXPECT_EQ(Content(folder / "other"), "precious");
}

/// Gives up the rights of root, when the test has them, while it lives.
class PlainUser {
  public:
    PlainUser() {
        constexpr uid_t nobody = 65534;
        changed_ = ::geteuid() == 0 && ::setresuid(nobody, nobody, 0) == 0;
    }
    ~PlainUser() {
        if (changed_ && ::setresuid(0, 0, 0) != 0) {
            ADD_FAILURE() << "still another user";
        }
    }
    PlainUser(const PlainUser&) = delete;
    PlainUser& operator=(const PlainUser&) = delete;
    PlainUser(PlainUser&&) = delete;
    PlainUser& operator=(PlainUser&&) = delete;

  private:
    bool changed_ = false;
};

/// Expects that a plain user is refused L1.DNG, which has `file_mode`, in a folder of `folder_mode`.
void ExpectRefused(mode_t folder_mode, mode_t file_mode) {
    const support::TempFolder folder;
    support::WriteFile(folder / "L1.DNG", "old");
    ASSERT_EQ(::chmod((folder / "L1.DNG").c_str(), file_mode), 0);
    ASSERT_EQ(::chmod(folder.path().c_str(), folder_mode), 0);
    {
        const PlainUser user;
        if (::geteuid() == 0) {
            GTEST_SKIP() << "root may write everywhere";
        }
        EXPECT_EQ(Replace(folder / "L1.DNG", "new"), EACCES);
    }
    EXPECT_EQ(::chmod(folder.path().c_str(), 0700), 0);
    EXPECT_EQ(support::Names(folder.path()), Names{"L1.DNG"});
    EXPECT_EQ(Content(folder / "L1.DNG"), "old");
}

TEST(ReplacementFile, AFileThatMayNotBeWrittenIsNotReplaced) {
    ExpectRefused(0777, 0444);
}

TEST(ReplacementFile, AFolderThatMayNotBeWrittenIsTheSystemsError) {
    ExpectRefused(0555, 0666);
}

}  // namespace
