// SPDX-License-Identifier: MIT
// Tests what else may be in the folder: links, files with modes and rights, and
// other runs.
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "system/replacement_file.h"
#include "tests/support/files.h"
#include "tests/system/replace.h"

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;
using Existing = ReplacementFile::Existing;
using namespace std::string_view_literals;

mode_t ModeOf(const std::string& path) {
    struct stat status = {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status.st_mode & mode_t{07777};
}

TEST(ReplacementFile, OfTheTargetOfALinkLeavesTheLink) {
    const support::TempFolder folder;
    fs::create_directory(folder / "card");
    support::WriteFile(folder / "card/real", "old");
    fs::create_symlink("card/real", folder / "relative");
    fs::create_symlink(folder / "relative", folder / "absolute");
    EXPECT_EQ(Replace(folder / "absolute", "new", Existing::kReplaceTarget), 0);
    EXPECT_EQ(Content(folder / "card/real"), "new");
    EXPECT_FALSE(fs::is_symlink(folder / "card/real"));
    EXPECT_EQ(fs::read_symlink(folder / "relative"), "card/real");
    EXPECT_EQ(fs::read_symlink(folder / "absolute"), folder / "relative");
    EXPECT_EQ(support::Names(folder / "card"), Names{"real"});
}

TEST(ReplacementFile, ABrokenLinkGetsItsTarget) {
    const support::TempFolder folder;
    fs::create_symlink("real", folder / "link");
    EXPECT_EQ(Replace(folder / "link", "new", Existing::kReplaceTarget), 0);
    EXPECT_EQ(Content(folder / "real"), "new");
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
}

TEST(ReplacementFile, LinksInACircleAreAnError) {
    const support::TempFolder folder;
    fs::create_symlink("b", folder / "a");
    fs::create_symlink("a", folder / "b");
    EXPECT_EQ(Replace(folder / "a", "new", Existing::kReplaceTarget), ELOOP);
    EXPECT_EQ(support::Names(folder.path()), (Names{"a", "b"}));
}

TEST(ReplacementFile, ASymbolicLinkIsReplacedAndItsTargetStays) {
    const support::TempFolder folder;
    support::WriteFile(folder / "real", "old");
    for (const std::string target : {"real", "nowhere", "L1.DNG"}) {
        fs::create_symlink(target, folder / "L1.DNG");
        EXPECT_EQ(Replace(folder / "L1.DNG", "new"), 0);
        EXPECT_FALSE(fs::is_symlink(folder / "L1.DNG"));
        EXPECT_EQ(Content(folder / "L1.DNG"), "new");
        EXPECT_EQ(Content(folder / "real"), "old");
        EXPECT_EQ(support::Names(folder.path()), (Names{"L1.DNG", "real"}));
        fs::remove(folder / "L1.DNG");
    }
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

TEST(ReplacementFile, TwoRunsInOneFolderDoNotCollide) {
    const support::TempFolder folder;
    ReplacementFile first;
    ReplacementFile second;
    ASSERT_EQ(first.Open(folder / "L1.DNG", Existing::kReplace).value(), 0);
    ASSERT_EQ(second.Open(folder / "L2.DNG", Existing::kReplace).value(), 0);
    first.Write("first"sv);
    second.Write("second"sv);
    EXPECT_EQ(first.Commit(5).value(), 0);
    EXPECT_EQ(second.Commit(6).value(), 0);
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

/// A device that the system would not miss if a faulty program replaced it. Made in `folder`, if the test has
/// root's rights; empty if that is not possible.
std::string HarmlessDevice(const support::TempFolder& folder) {
    if (::geteuid() != 0) {
        return "/dev/null";
    }
    const std::string path = folder / "device";
    return ::mknod(path.c_str(), S_IFCHR | 0600, ::makedev(1, 3)) == 0 ? path : "";
}

TEST(ReplacementFile, PipesAndDevicesAreNotReplaced) {
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
    EXPECT_EQ(Replace(folder / "L2.DNG", "new", Existing::kReplaceTarget), EEXIST);
    EXPECT_TRUE(fs::is_character_file(device));
    EXPECT_EQ(support::Names(folder.path()), Names{"L2.DNG"});
}

/// Gives up root's rights, if the test has them, for the lifetime of the object.
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

/// Expects that an ordinary user cannot replace L1.DNG, with `file_mode`, in a folder with `folder_mode`.
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

TEST(ReplacementFile, AFolderThatMayNotBeWrittenIsAnError) {
    ExpectRefused(0555, 0666);
}

}  // namespace
