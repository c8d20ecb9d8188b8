// SPDX-License-Identifier: MIT
#include "system/part_files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/files.h"

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

constexpr std::chrono::hours kDay(24);

/// A new part file name with another process and, if given, another computer.
std::string NameOf(const std::string& process, const std::string& host = "") {
    const std::string name = part_files::NewName();
    const std::string mine = "-" + std::to_string(::getpid()) + "-";
    const auto position = name.rfind(mine);
    EXPECT_NE(position, std::string::npos) << name;
    const std::string begin = ".velmarcon-";
    EXPECT_TRUE(name.starts_with(begin)) << name;
    const std::string computer = host.empty() ? name.substr(begin.size(), position - begin.size()) : host;
    return begin + computer + "-" + process + "-" + name.substr(position + mine.size());
}

/// The number of a process that has ended.
std::string EndedProcess() {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(0);
    }
    EXPECT_EQ(::waitpid(child, nullptr, 0), child);
    return std::to_string(child);
}

class PartFiles : public testing::Test {
  protected:
    void Put(const std::string& name, std::chrono::hours age = std::chrono::hours(0)) const {
        support::WriteFile(folder_ / name, "half of a file");
        fs::last_write_time(folder_ / name, fs::file_time_type::clock::now() - age);
    }

    Names AfterRemoval() const {
        part_files::RemoveStale(folder_.prefix());
        return support::Names(folder_.path());
    }

    support::TempFolder folder_;
};

TEST_F(PartFiles, HaveUniqueNames) {
    std::set<std::string> names;
    for (int i = 0; i < 1000; ++i) {
        names.insert(part_files::NewName());
    }
    EXPECT_EQ(names.size(), 1000U);
    EXPECT_TRUE(names.begin()->ends_with(".part"));
    EXPECT_LE(names.begin()->size(), 100U);
    EXPECT_EQ(names.begin()->find('/'), std::string::npos);
}

TEST_F(PartFiles, OfAProcessThatHasEndedAreRemoved) {
    const std::string ended = EndedProcess();
    for (int i = 0; i < 150; ++i) {
        Put(NameOf(ended));
    }
    EXPECT_EQ(AfterRemoval(), Names());
}

TEST_F(PartFiles, OfAProcessThatHasEndedAreRemovedWhateverTheirTime) {
    Put(NameOf(EndedProcess()), -kDay);
    EXPECT_EQ(AfterRemoval(), Names{});
}

TEST_F(PartFiles, OfAProcessThatRunsStay) {
    Put(NameOf(std::to_string(::getppid())));
    Put(NameOf("1"));
    EXPECT_EQ(AfterRemoval().size(), 2U);
}

TEST_F(PartFiles, OfAnEarlierProcessOfTheSameNumberAreRemoved) {
    Put(part_files::NewName());
    EXPECT_EQ(AfterRemoval(), Names());
}

TEST_F(PartFiles, OfAnotherComputerStayForADay) {
    const std::string young = NameOf(EndedProcess(), "another-computer");
    Put(young, kDay - std::chrono::hours(1));
    Put(NameOf(EndedProcess(), "another-computer"), kDay + std::chrono::hours(1));
    EXPECT_EQ(AfterRemoval(), Names{young});
}

TEST_F(PartFiles, WhoseProcessNumberIsInUseAgainStayForADay) {
    Put(NameOf("1"), kDay + std::chrono::hours(1));
    EXPECT_EQ(AfterRemoval(), Names());
}

TEST_F(PartFiles, OfAnEarlierVersionStayForADayWhateverTheirNumbers) {
    Put(".velmarcon-0.part", kDay - std::chrono::hours(1));
    Put(".velmarcon-7.part", kDay + std::chrono::hours(1));
    Put(".velmarcon-250.part", kDay + std::chrono::hours(1));
    EXPECT_EQ(AfterRemoval(), Names{".velmarcon-0.part"});
}

TEST_F(PartFiles, ThatAnotherRunHasLockedStay) {
    const std::string name = NameOf(EndedProcess());
    Put(name);
    const int theirs = ::open((folder_ / name).c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(::flock(theirs, LOCK_EX | LOCK_NB), 0);
    EXPECT_EQ(AfterRemoval(), Names{name});
    ::close(theirs);
    EXPECT_EQ(AfterRemoval(), Names());
}

TEST_F(PartFiles, AreDistinguishedFromOtherFiles) {
    const Names others = {".velmarcon-.part",    ".velmarcon--1-2.part",  ".velmarcon-host-1.part",
                          ".velmarcon-1.part.x", ".velmarcon-a-b-c.part", ".velmarcon-host-1-xyz.part",
                          ".velmarcon.part",     "velmarcon-1.part",      ".velmarcon-1"};
    for (const std::string& name : others) {
        Put(name, 10 * kDay);
    }
    EXPECT_EQ(AfterRemoval().size(), others.size());
}

TEST_F(PartFiles, AreNoLinksFoldersOrPipes) {
    const std::string ended = EndedProcess();
    support::WriteFile(folder_ / "other", "precious");
    fs::create_symlink("other", folder_ / NameOf(ended));
    fs::create_symlink("nowhere", folder_ / NameOf(ended));
    fs::create_directory(folder_ / NameOf(ended));
    ASSERT_EQ(::mkfifo((folder_ / NameOf(ended)).c_str(), 0600), 0);
    EXPECT_EQ(AfterRemoval().size(), 5U);
    EXPECT_EQ(support::ReadText(folder_ / "other"), "precious");
}

TEST_F(PartFiles, OfAMissingFolderAreNone) {
    part_files::RemoveStale(folder_ / "missing/");
    EXPECT_EQ(support::Names(folder_.path()), Names());
}

TEST_F(PartFiles, OfAnOlderLauncherAreRemovedAfterItsProcess) {
    Put(".lensdb-" + EndedProcess() + ".part");
    Put(".sensdb.ini-" + EndedProcess() + ".part");
    const std::string running = ".lensdb-" + std::to_string(::getppid()) + ".part";
    Put(running, 2 * kDay);
    EXPECT_EQ(AfterRemoval(), Names{running});
}

}  // namespace
