// SPDX-License-Identifier: MIT
#include "system/backups.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/files.h"

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

class Backups : public testing::Test {
  protected:
    std::uint32_t Highest() const {
        std::error_code error;
        const std::uint32_t highest = backups::HighestNumber(path_, error);
        EXPECT_FALSE(error) << error;
        return highest;
    }

    void Put(const std::string& name) const { support::WriteFile(folder_ / name, "text"); }

    support::TempFolder folder_;
    std::string path_ = folder_ / "a.ini";
};

TEST_F(Backups, OfOtherFilesDoNotCount) {
    EXPECT_EQ(Highest(), 0U);
    Put("a.ini.2");
    Put("a.ini.11");
    Put("b.ini.99");
    Put("a.ini.03");
    EXPECT_EQ(Highest(), 11U);
    fs::create_directory(folder_ / "a.ini.12");
    EXPECT_EQ(Highest(), 12U);
}

TEST_F(Backups, CannotBeCountedInAMissingFolder) {
    std::error_code error;
    EXPECT_EQ(backups::HighestNumber(folder_ / "none/a.ini", error), 0U);
    EXPECT_EQ(error, std::errc::no_such_file_or_directory);
}

TEST_F(Backups, TakeTheNextNumberThatIsFree) {
    Texts tried;
    std::string kept;
    const auto error = backups::Make(
        path_, 2,
        {.is_in = [](const std::string&) { return false; },
         .write_to =
             [&](const std::string& copy) {
                 tried.push_back(copy);
                 return tried.size() == 3 ? std::error_code() : std::make_error_code(std::errc::file_exists);
             }},
        kept);
    EXPECT_FALSE(error) << error;
    EXPECT_EQ(tried, (Texts{path_ + ".3", path_ + ".4", path_ + ".5"}));
    EXPECT_EQ(kept, path_ + ".5");
}

TEST_F(Backups, AreNotMadeIfTheLastOneHasTheSameContent) {
    Texts asked;
    std::string kept = "left from before";
    const auto error = backups::Make(path_, 2,
                                     {.is_in =
                                          [&](const std::string& copy) {
                                              asked.push_back(copy);
                                              return true;
                                          },
                                      .write_to =
                                          [](const std::string&) {
                                              ADD_FAILURE() << "a copy is written";
                                              return std::error_code();
                                          }},
                                     kept);
    EXPECT_FALSE(error) << error;
    EXPECT_EQ(asked, Texts{path_ + ".2"});
    EXPECT_EQ(kept, "");
}

TEST_F(Backups, FailWithAnyErrorButATakenName) {
    std::string kept;
    const auto error = backups::Make(
        path_, 0,
        {.is_in =
             [](const std::string&) {
                 ADD_FAILURE() << "there is no copy to look at";
                 return false;
             },
         .write_to = [](const std::string&) { return std::make_error_code(std::errc::no_space_on_device); }},
        kept);
    EXPECT_EQ(error, std::errc::no_space_on_device);
    EXPECT_EQ(kept, path_ + ".1");
}

}  // namespace
