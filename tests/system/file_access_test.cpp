// SPDX-License-Identifier: MIT
// Tests who may read a replaced file, and which attributes it keeps.
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "system/replacement_file.h"
#include "tests/support/files.h"
#include "tests/system/replace.h"

namespace {

namespace fs = std::filesystem;

using Existing = ReplacementFile::Existing;
using namespace std::string_view_literals;

constexpr const char* kAccessList = "system.posix_acl_access";
constexpr const char* kFolderList = "system.posix_acl_default";
constexpr const char* kRating = "user.rating";

mode_t ModeOf(const std::string& path) {
    struct stat status = {};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0);
    return status.st_mode & mode_t{07777};
}

std::optional<std::string> Attribute(const std::string& path, const char* name) {
    std::string value(1000, '\0');
    const auto size = ::getxattr(path.c_str(), name, value.data(), value.size());
    if (size < 0) {
        return std::nullopt;
    }
    value.resize(static_cast<std::size_t>(size));
    return value;
}

bool SetAttribute(const std::string& path, const char* name, std::string_view value) {
    return ::setxattr(path.c_str(), name, value.data(), value.size(), 0) == 0;
}

/// An entry of an access control list, as in acl(5): tag, permissions, and the user or group that has them.
struct Entry {
    std::uint16_t tag;
    std::uint16_t permissions;
    std::uint32_t id = 0xFFFFFFFF;
};
constexpr std::uint16_t kOwner = 1;
constexpr std::uint16_t kUser = 2;
constexpr std::uint16_t kGroup = 4;
constexpr std::uint16_t kMask = 16;
constexpr std::uint16_t kOthers = 32;

std::string List(const std::vector<Entry>& entries) {
    std::string text("\2\0\0\0", 4);
    const auto append = [&](std::uint32_t value, int bytes) {
        for (; bytes > 0; --bytes, value >>= 8U) {
            text += static_cast<char>(value & 0xFFU);
        }
    };
    for (const Entry& entry : entries) {
        append(entry.tag, 2);
        append(entry.permissions, 2);
        append(entry.id, 4);
    }
    return text;
}

class FileAccess : public testing::Test {
  protected:
    void SetUp() override {
        support::WriteFile(dng_, "old");
        ASSERT_EQ(::chmod(dng_.c_str(), 0600), 0);
    }

    support::TempFolder folder_;
    std::string dng_ = folder_ / "L1.DNG";
};

TEST_F(FileAccess, OfAPrivateFileIsPrivateFromTheStart) {
    ReplacementFile file;
    ASSERT_EQ(file.Open(dng_, Existing::kReplace).value(), 0);
    file.Write("new"sv);
    for (const std::string& name : support::Names(folder_.path())) {
        EXPECT_EQ(ModeOf(folder_ / name), mode_t{0600}) << name;
    }
    EXPECT_EQ(file.Commit(3).value(), 0);
    EXPECT_EQ(ModeOf(dng_), mode_t{0600});
}

TEST_F(FileAccess, ByAnAccessControlListIsKept) {
    const std::string list = List({{kOwner, 6}, {kUser, 4, 12345}, {kGroup, 0}, {kMask, 4}, {kOthers, 0}});
    if (!SetAttribute(dng_, kAccessList, list)) {
        GTEST_SKIP() << "no access control lists here";
    }
    EXPECT_EQ(Replace(dng_, "new"), 0);
    EXPECT_EQ(Attribute(dng_, kAccessList), list);
    EXPECT_EQ(ModeOf(dng_), mode_t{0640});
}

TEST_F(FileAccess, IsNotWidenedByTheFoldersList) {
    const std::string list = List({{kOwner, 7}, {kUser, 7, 12345}, {kGroup, 7}, {kMask, 7}, {kOthers, 5}});
    if (!SetAttribute(folder_.path(), kFolderList, list)) {
        GTEST_SKIP() << "no access control lists here";
    }
    ASSERT_EQ(::chmod(dng_.c_str(), 0640), 0);
    EXPECT_EQ(Replace(dng_, "new"), 0);
    EXPECT_EQ(Attribute(dng_, kAccessList), std::nullopt);
    EXPECT_EQ(ModeOf(dng_), mode_t{0640});
}

TEST_F(FileAccess, OfANewFileIsWhatTheFoldersListSays) {
    const std::string list = List({{kOwner, 7}, {kUser, 7, 12345}, {kGroup, 5}, {kMask, 7}, {kOthers, 0}});
    if (!SetAttribute(folder_.path(), kFolderList, list)) {
        GTEST_SKIP() << "no access control lists here";
    }
    EXPECT_EQ(Replace(folder_ / "L2.DNG", "new", Existing::kKeep), 0);
    EXPECT_EQ(ModeOf(folder_ / "L2.DNG"), mode_t{0660});
}

TEST_F(FileAccess, AttributesAreKept) {
    if (!SetAttribute(dng_, kRating, "5") || !SetAttribute(dng_, "user.empty", "")) {
        GTEST_SKIP() << "no attributes here";
    }
    EXPECT_EQ(Replace(dng_, "new"), 0);
    EXPECT_EQ(Content(dng_), "new");
    EXPECT_EQ(Attribute(dng_, kRating), "5");
    EXPECT_EQ(Attribute(dng_, "user.empty"), "");
}

TEST_F(FileAccess, AttributesOfAFileThatItsOwnerMayNotReadDoNotKeepItFromBeingReplaced) {
    ASSERT_EQ(::chmod(dng_.c_str(), 0200), 0);
    EXPECT_EQ(Replace(dng_, "new"), 0);
    EXPECT_EQ(ModeOf(dng_), mode_t{0200});
}

TEST_F(FileAccess, OfACopyIsThatOfItsOriginalAndPrivateUntilThen) {
    fs::create_symlink("L1.DNG", folder_ / "link");
    for (const mode_t mode : {mode_t{0600}, mode_t{0644}, mode_t{0660}, mode_t{0400}}) {
        for (const char* original : {"L1.DNG", "link"}) {
            ASSERT_EQ(::chmod(dng_.c_str(), mode), 0);
            fs::remove(folder_ / "copy");
            ReplacementFile file;
            ASSERT_EQ(file.OpenCopy(folder_ / "copy", folder_ / original).value(), 0);
            for (const std::string& name : support::Names(folder_.path())) {
                if (name.ends_with(".part")) {
                    EXPECT_EQ(ModeOf(folder_ / name), mode_t{0600});
                }
            }
            file.Write("old"sv);
            EXPECT_EQ(file.Commit(3).value(), 0);
            EXPECT_EQ(ModeOf(folder_ / "copy"), mode) << original;
            EXPECT_EQ(Content(folder_ / "copy"), "old");
        }
    }
}

TEST_F(FileAccess, ByTheListAndTheAttributesOfItsOriginalIsThatOfACopy) {
    const std::string list = List({{kOwner, 6}, {kUser, 4, 12345}, {kGroup, 0}, {kMask, 4}, {kOthers, 0}});
    if (!SetAttribute(dng_, kAccessList, list) || !SetAttribute(dng_, kRating, "5")) {
        GTEST_SKIP() << "no access control lists or attributes here";
    }
    ReplacementFile file;
    ASSERT_EQ(file.OpenCopy(folder_ / "copy", dng_).value(), 0);
    EXPECT_EQ(file.Commit(0).value(), 0);
    EXPECT_EQ(Attribute(folder_ / "copy", kAccessList), list);
    EXPECT_EQ(Attribute(folder_ / "copy", kRating), "5");
}

TEST_F(FileAccess, OfAnOriginalThatIsGoneIsNotGuessed) {
    ReplacementFile file;
    ASSERT_EQ(file.OpenCopy(folder_ / "copy", dng_).value(), 0);
    fs::remove(dng_);
    EXPECT_EQ(file.Commit(0).value(), ENOENT);
    EXPECT_FALSE(fs::exists(folder_ / "copy"));
}

TEST_F(FileAccess, OfACopyDoesNotLetItReplaceAnything) {
    support::WriteFile(folder_ / "copy", "mine");
    ReplacementFile file;
    EXPECT_EQ(file.OpenCopy(folder_ / "copy", dng_).value(), EEXIST);
    EXPECT_EQ(Content(folder_ / "copy"), "mine");
}

}  // namespace
