// SPDX-License-Identifier: MIT
#include "packaging/whole_copy.h"

#include <cerrno>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/files.h"

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

class WholeCopy : public testing::Test {
  protected:
    std::string Path(const std::string& name) const { return folder_.path() / name; }

    const support::TempFolder folder_;
};

TEST_F(WholeCopy, HasTheBytesOfItsSource) {
    using namespace std::string_view_literals;
    support::WriteFile(Path("old"), "one\0two\n"sv);
    EXPECT_EQ(CopyWhole(Path("old"), Path("new.ini")).value(), 0);
    EXPECT_EQ(support::ReadFile(Path("new.ini")), support::ReadFile(Path("old")));
    EXPECT_EQ(support::Names(folder_.path()), (Texts{"new.ini", "old"}));
}

TEST_F(WholeCopy, ReplacesNothing) {
    support::WriteFile(Path("old"), "old");
    support::WriteFile(Path("file.ini"), "mine");
    fs::create_symlink("nowhere", Path("link.ini"));
    EXPECT_EQ(CopyWhole(Path("old"), Path("file.ini")).value(), EEXIST);
    EXPECT_EQ(CopyWhole(Path("old"), Path("link.ini")).value(), EEXIST);
    EXPECT_EQ(support::ReadText(Path("file.ini")), "mine");
    EXPECT_EQ(support::Names(folder_.path()), (Texts{"file.ini", "link.ini", "old"}));
}

TEST_F(WholeCopy, LeavesNothingWhenItsSourceCannotBeRead) {
    EXPECT_EQ(CopyWhole(Path("none"), Path("new.ini")).value(), ENOENT);
    EXPECT_NE(CopyWhole(folder_.path(), Path("new.ini")).value(), 0);
    EXPECT_EQ(support::Names(folder_.path()), Texts());
}

TEST_F(WholeCopy, MayBeReadByThoseWhoMayReadItsSource) {
    support::WriteFile(Path("old"), "old");
    for (const fs::perms permissions : {fs::perms::owner_read | fs::perms::owner_write,
                                        fs::perms::owner_read | fs::perms::set_uid, fs::perms::owner_read}) {
        fs::permissions(Path("old"), permissions);
        fs::remove(Path("new.ini"));
        ASSERT_EQ(CopyWhole(Path("old"), Path("new.ini")).value(), 0);
        EXPECT_EQ(fs::status(Path("new.ini")).permissions(), permissions & fs::perms::all);
    }
}

}  // namespace
