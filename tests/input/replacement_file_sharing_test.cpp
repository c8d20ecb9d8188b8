// SPDX-License-Identifier: MIT
// What stands in the folder already: links, modes and rights, and the parts of other runs.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "input/replacement_file.h"
#include "tests/input/replace.h"
#include "tests/support/files.h"

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

mode_t ModeOf(const std::string& path) {
    struct stat status = {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status.st_mode & mode_t{07777};
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

TEST(ReplacementFile, ThePartOfAKilledRunIsRemovedAndLeavesNoTrace) {
    const support::TempFolder folder;
    support::WriteFile(folder / ".velmarcon-0.part", "half of a file that was being written");
    fs::permissions(folder / ".velmarcon-0.part", fs::perms::owner_all);
    const mode_t mask = ::umask(022);
    EXPECT_EQ(Replace(folder / "L1.DNG", "new"), 0);
    ::umask(mask);
    EXPECT_EQ(support::Names(folder.path()), Names{"L1.DNG"});
    EXPECT_EQ(Content(folder / "L1.DNG"), "new");
    EXPECT_EQ(fs::status(folder / "L1.DNG").permissions(), fs::perms(0644));
}

TEST(ReplacementFile, ThePartsOfSeveralKilledRunsAreRemoved) {
    const support::TempFolder folder;
    for (const char* part : {".velmarcon-0.part", ".velmarcon-1.part", ".velmarcon-2.part"}) {
        support::WriteFile(folder / part, "half of a file");
    }
    EXPECT_EQ(Replace(folder / "L1.DNG", "new"), 0);
    EXPECT_EQ(support::Names(folder.path()), Names{"L1.DNG"});
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

TEST(ReplacementFile, AnotherRunsPartBehindAStaleOneIsNotTouched) {
    const support::TempFolder folder;
    const LockedPart theirs(folder / ".velmarcon-1.part");
    support::WriteFile(folder / ".velmarcon-0.part", "half of a file");
    EXPECT_EQ(Replace(folder / "L1.DNG", "new"), 0);
    EXPECT_EQ(Content(folder / ".velmarcon-1.part"), "theirs");
    EXPECT_EQ(support::Names(folder.path()), (Names{".velmarcon-1.part", "L1.DNG"}));
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

/// Writes `count` files of its own into the folder. Returns how many could not be written.
int WriteMany(const support::TempFolder& folder, const std::string& prefix, int count) {
    int failures = 0;
    for (int i = 0; i < count; ++i) {
        failures += Replace(folder / (prefix + std::to_string(i % 10)), "new") != 0 ? 1 : 0;
    }
    return failures;
}

TEST(ReplacementFile, RunsThatEndWhileOthersBeginDoNotDisturbThem) {
    constexpr int runs = 4;
    constexpr int files_of_each = 2000;
    const support::TempFolder folder;
    std::vector<pid_t> children;
    for (int run = 0; run < runs; ++run) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            const int failures =
                WriteMany(folder, std::string(1, static_cast<char>('a' + run)), files_of_each);
            ::_exit(failures == 0 ? 0 : 1);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(support::Names(folder.path()).size(), runs * 10U);
}

TEST(ReplacementFile, WhatStandsInThePartsPlaceIsPassedOver) {
    const support::TempFolder folder;
    support::WriteFile(folder / "other", "precious");
    fs::create_symlink("other", folder / ".velmarcon-0.part");
    fs::create_symlink("nowhere", folder / ".velmarcon-1.part");
    fs::create_directory(folder / ".velmarcon-2.part");
    ASSERT_EQ(::mkfifo((folder / ".velmarcon-3.part").c_str(), 0600), 0);
    const auto before = support::Names(folder.path());
    EXPECT_EQ(Replace(folder / "L1.DNG", "new"), 0);
    EXPECT_EQ(Content(folder / "L1.DNG"), "new");
    EXPECT_EQ(Content(folder / "other"), "precious");
    fs::remove(folder / "L1.DNG");
    EXPECT_EQ(support::Names(folder.path()), before);
}

/// A device that a mistake could not take from the system: `folder` gets one of its own when the test has
/// root's rights. Empty when that is not possible.
std::string HarmlessDevice(const support::TempFolder& folder) {
    if (::geteuid() != 0) {
        return "/dev/null";
    }
    const std::string path = folder / "device";
    return ::mknod(path.c_str(), S_IFCHR | 0600, ::makedev(1, 3)) == 0 ? path : "";
}

TEST(ReplacementFile, WhatIsNoPlainFileIsNotReplaced) {
    const support::TempFolder folder;
    ASSERT_EQ(::mkfifo((folder / "L1.DNG").c_str(), 0600), 0);
    EXPECT_EQ(Replace(folder / "L1.DNG", "new"), EEXIST);
    EXPECT_TRUE(fs::is_fifo(folder / "L1.DNG"));
    EXPECT_EQ(support::Names(folder.path()), Names{"L1.DNG"});
}

TEST(ReplacementFile, ALinkToADeviceIsNotReplaced) {
    const support::TempFolder devices;
    const std::string device = HarmlessDevice(devices);
    if (device.empty()) {
        GTEST_SKIP() << "root may not make a device here";
    }
    const support::TempFolder folder;
    fs::create_symlink(device, folder / "L2.DNG");
    EXPECT_EQ(Replace(folder / "L2.DNG", "new"), EEXIST);
    EXPECT_TRUE(fs::is_character_file(device));
    EXPECT_EQ(support::Names(folder.path()), Names{"L2.DNG"});
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
