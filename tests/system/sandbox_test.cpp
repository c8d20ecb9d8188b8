// SPDX-License-Identifier: MIT
// Tests what the system refuses a process in the sandbox. Each test is a process
// of its own, because there is no way out of the sandbox.
#include "system/sandbox.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/files.h"

#if !defined(_WIN32)

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <functional>

namespace {

/// 0, or the error number if `result` is that of a failed call.
int ErrorOf(int result) {
    return result >= 0 ? 0 : errno;
}

class Sandbox : public testing::Test {
  protected:
    Sandbox() {
        for (const char* name : {"in", "out", "elsewhere"}) {
            std::filesystem::create_directory(folder_ / name);
            support::WriteFile(folder_ / (name + std::string("/file")), "text");
        }
    }

    /// The result of `attempt` in a process that is confined to `reach`.
    static int Try(const Reach& reach, const std::function<int()>& attempt) {
        constexpr int no_sandbox = 255;
        const pid_t child = ::fork();
        if (child == 0) {
            ::_exit(EnterSandbox(reach) ? attempt() : no_sandbox);
        }
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status));
        return WEXITSTATUS(status) == no_sandbox ? -1 : WEXITSTATUS(status);
    }

    int Try(const std::function<int()>& attempt) const {
        return Try({{folder_ / "in"}, {folder_ / "out"}, {folder_ / "link"}}, attempt);
    }

    int Open(const std::string& name, int flags) const {
        return Try([&] { return ErrorOf(::open((folder_ / name).c_str(), flags, 0600)); });
    }

    void SetUp() override {
        if (Try({}, [] { return 0; }) != 0) {
            GTEST_SKIP() << "this kernel, or this build, has no Landlock";
        }
    }

    support::TempFolder folder_;
};

TEST_F(Sandbox, LetsTheInputBeReadAndNothingElse) {
    EXPECT_EQ(Open("in/file", O_RDONLY), 0);
    EXPECT_EQ(Open("out/file", O_RDONLY), 0);
    EXPECT_EQ(Open("elsewhere/file", O_RDONLY), EACCES);
    EXPECT_EQ(Open("elsewhere", O_RDONLY | O_DIRECTORY), EACCES);
    EXPECT_EQ(Open("in/../elsewhere/file", O_RDONLY), EACCES);
}

TEST_F(Sandbox, LetsNothingBeWrittenButTheOutput) {
    for (const std::string place : {"in/", "elsewhere/"}) {
        EXPECT_EQ(Open(place + "file", O_WRONLY), EACCES) << place;
        EXPECT_EQ(Open(place + "new", O_WRONLY | O_CREAT), EACCES) << place;
        const std::string file = folder_ / (place + "file");
        const std::string other = folder_ / (place + "other");
        EXPECT_EQ(Try([&] { return ErrorOf(::unlink(file.c_str())); }), EACCES) << place;
        EXPECT_EQ(Try([&] { return ErrorOf(std::rename(file.c_str(), other.c_str())); }), EACCES) << place;
        EXPECT_EQ(Try([&] { return ErrorOf(::symlink("file", other.c_str())); }), EACCES) << place;
        EXPECT_EQ(Try([&] { return ErrorOf(::mkdir(other.c_str(), 0700)); }), EACCES) << place;
        EXPECT_EQ(support::Names(folder_ / place), std::vector<std::string>{"file"});
        EXPECT_EQ(support::ReadText(file), "text");
    }
}

TEST_F(Sandbox, LetsTheOutputBeMadeRenamedReplacedAndRemoved) {
    const std::string part = folder_ / "out/part";
    const std::string file = folder_ / "out/file";
    EXPECT_EQ(Open("out/part", O_RDWR | O_CREAT | O_EXCL), 0);
    EXPECT_EQ(Open("out/part", O_RDWR | O_TRUNC), 0);
    EXPECT_EQ(Try([&] { return ErrorOf(::link(part.c_str(), (part + "2").c_str())); }), 0);
    EXPECT_EQ(Try([&] { return ErrorOf(std::rename(part.c_str(), file.c_str())); }), 0);
    EXPECT_EQ(Try([&] { return ErrorOf(::unlink(file.c_str())); }), 0);
    EXPECT_EQ(support::Names(folder_ / "out"), std::vector<std::string>{"part2"});
}

TEST_F(Sandbox, LetsNothingBeMovedOutOfTheOutput) {
    const std::string file = folder_ / "out/file";
    const std::string target = folder_ / "elsewhere/moved";
    EXPECT_NE(Try([&] { return ErrorOf(std::rename(file.c_str(), target.c_str())); }), 0);
    EXPECT_NE(Try([&] { return ErrorOf(::link(file.c_str(), target.c_str())); }), 0);
    EXPECT_EQ(support::Names(folder_ / "elsewhere"), std::vector<std::string>{"file"});
}

TEST_F(Sandbox, LetsNoLinkInTheOutputBeFollowedOut) {
    std::filesystem::create_symlink("../elsewhere/new", folder_ / "out/link");
    EXPECT_EQ(Open("out/link", O_WRONLY | O_CREAT), EACCES);
    EXPECT_EQ(support::Names(folder_ / "elsewhere"), std::vector<std::string>{"file"});
}

TEST_F(Sandbox, LetsALinkedFileBeReadButNotItsNeighbours) {
    support::WriteFile(folder_ / "elsewhere/neighbour", "");
    std::filesystem::create_symlink("elsewhere/file", folder_ / "link");
    EXPECT_EQ(Open("link", O_RDONLY), 0);
    EXPECT_EQ(Open("link", O_WRONLY), EACCES);
    EXPECT_EQ(Open("elsewhere/neighbour", O_RDONLY), EACCES);
}

TEST_F(Sandbox, IsNotAffectedByLinksToFoldersOrBrokenLinks) {
    for (const char* target : {"elsewhere", "nowhere", "link"}) {
        std::filesystem::remove(folder_ / "link");
        std::filesystem::create_symlink(target, folder_ / "link");
        EXPECT_EQ(Open("elsewhere/file", O_RDONLY), EACCES) << target;
        EXPECT_EQ(Open("in/file", O_RDONLY), 0) << target;
    }
}

TEST_F(Sandbox, LetsNoProgramBeStarted) {
    EXPECT_EQ(Try([] {
                  ::execl("/bin/true", "true", nullptr);
                  return errno;
              }),
              EACCES);
}

TEST_F(Sandbox, IgnoresMissingFolders) {
    EXPECT_EQ(Try({{folder_ / "missing"}, {folder_ / "out"}, {}},
                  [&] { return ErrorOf(::open((folder_ / "in/file").c_str(), O_RDONLY)); }),
              EACCES);
}

}  // namespace

#endif
