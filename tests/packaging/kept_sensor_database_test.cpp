// SPDX-License-Identifier: MIT
#include "packaging/kept_sensor_database.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/files.h"

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

class KeptSensorDatabase : public testing::Test {
  protected:
    std::string Path(const std::string& name) const { return folder_.path() / name; }

    /// Keeps a database with this text. Returns the names in the folder afterwards.
    Texts NamesAfterKeeping(const std::string& text) {
        support::WriteFile(Path("sensdb.ini"), text);
        EXPECT_EQ(KeepSensorDatabase(Path("sensdb.ini")).value(), 0);
        return support::Names(folder_.path());
    }

    const support::TempFolder folder_;
};

TEST_F(KeptSensorDatabase, GetsTheNumberAfterTheHighest) {
    EXPECT_EQ(NamesAfterKeeping("a"), (Texts{"sensdb.ini", "sensdb.ini.1"}));
    EXPECT_EQ(NamesAfterKeeping("b"), (Texts{"sensdb.ini", "sensdb.ini.1", "sensdb.ini.2"}));
    fs::remove(Path("sensdb.ini.1"));
    support::WriteFile(Path("sensdb.ini.9"), "nine");
    EXPECT_EQ(NamesAfterKeeping("c"), (Texts{"sensdb.ini", "sensdb.ini.10", "sensdb.ini.2", "sensdb.ini.9"}));
    EXPECT_EQ(support::ReadText(Path("sensdb.ini.2")), "b");
    EXPECT_EQ(support::ReadText(Path("sensdb.ini.9")), "nine");
    EXPECT_EQ(support::ReadText(Path("sensdb.ini.10")), "c");
}

TEST_F(KeptSensorDatabase, IsNotKeptTwiceInARow) {
    (void)NamesAfterKeeping("a");
    EXPECT_EQ(NamesAfterKeeping("a"), (Texts{"sensdb.ini", "sensdb.ini.1"}));
    (void)NamesAfterKeeping("b");
    EXPECT_EQ(NamesAfterKeeping("a").size(), 4U);
    EXPECT_EQ(support::ReadText(Path("sensdb.ini.3")), "a");
}

TEST_F(KeptSensorDatabase, IsKeptFromWhereItsLinkLeads) {
    support::WriteFile(Path("elsewhere"), "linked");
    fs::create_symlink("elsewhere", Path("sensdb.ini"));
    EXPECT_EQ(KeepSensorDatabase(Path("sensdb.ini")).value(), 0);
    EXPECT_EQ(support::ReadText(Path("sensdb.ini.1")), "linked");
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(Path("sensdb.ini.1"))));
    EXPECT_TRUE(fs::is_symlink(Path("sensdb.ini")));
}

TEST_F(KeptSensorDatabase, MayBeReadByThoseWhoMayReadTheDatabase) {
    const mode_t usual = ::umask(S_IRWXG | S_IRWXO);
    for (const mode_t mode : {mode_t{0600}, mode_t{0640}, mode_t{0644}, mode_t{0440}}) {
        fs::remove(Path("sensdb.ini"));
        support::WriteFile(Path("sensdb.ini"), std::to_string(mode));
        ASSERT_EQ(::chmod(Path("sensdb.ini").c_str(), mode), 0);
        EXPECT_EQ(KeepSensorDatabase(Path("sensdb.ini")).value(), 0);
        struct stat status = {};
        EXPECT_EQ(::stat(Path("sensdb.ini.1").c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & mode_t{07777}, mode);
        fs::remove(Path("sensdb.ini.1"));
    }
    ::umask(usual);
}

TEST_F(KeptSensorDatabase, LeavesAloneAnythingUnderANumber) {
    fs::create_symlink("nowhere", Path("sensdb.ini.1"));
    fs::create_directory(Path("sensdb.ini.2"));
    (void)NamesAfterKeeping("a");
    EXPECT_EQ(support::ReadText(Path("sensdb.ini.3")), "a");
    EXPECT_FALSE(fs::exists(Path("nowhere")));
}

TEST_F(KeptSensorDatabase, CountsNoOtherNames) {
    for (const char* name :
         {"sensdb.ini.", "sensdb.ini.01", "sensdb.ini.7x", "sensdb.ini.-3", "sensdb.ini.+4",
          "sensdb.ini.99999999999999999999", "sensdb.init.5", "other.ini.6"}) {
        support::WriteFile(Path(name), "other");
    }
    (void)NamesAfterKeeping("a");
    EXPECT_EQ(support::ReadText(Path("sensdb.ini.1")), "a");
}

TEST_F(KeptSensorDatabase, IsNotKeptWhereThereIsNone) {
    EXPECT_EQ(KeepSensorDatabase(Path("sensdb.ini")).value(), 0);
    fs::create_symlink("nowhere", Path("sensdb.ini"));
    EXPECT_EQ(KeepSensorDatabase(Path("sensdb.ini")).value(), 0);
    fs::remove(Path("sensdb.ini"));
    ASSERT_EQ(::mkfifo(Path("sensdb.ini").c_str(), S_IRUSR), 0);
    EXPECT_EQ(KeepSensorDatabase(Path("sensdb.ini")).value(), 0);
    EXPECT_EQ(support::Names(folder_.path()), Texts{"sensdb.ini"});
}

TEST_F(KeptSensorDatabase, IsAnErrorWhereItCannotBeLookedAt) {
    fs::create_symlink("sensdb.ini", Path("sensdb.ini"));
    EXPECT_EQ(KeepSensorDatabase(Path("sensdb.ini")).value(), ELOOP);
}

}  // namespace
