// SPDX-License-Identifier: MIT
#include "system/same_bytes.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/files.h"

namespace {

class HaveSameBytesTest : public testing::Test {
  protected:
    std::string Make(const std::string& name, const std::string& bytes) const {
        std::string path = folder_.path().string() + "/" + name;
        support::WriteFile(path, bytes);
        return path;
    }

    const support::TempFolder folder_;
};

TEST_F(HaveSameBytesTest, OfEqualFiles) {
    const std::string text(200'000, 'x');  // more than one piece
    EXPECT_TRUE(HaveSameBytes(Make("a", text), Make("b", text)));
    EXPECT_TRUE(HaveSameBytes(Make("c", ""), Make("d", "")));
}

TEST_F(HaveSameBytesTest, NotOfFilesThatDifferInTheLastByteOrInLength) {
    const std::string text(200'000, 'x');
    const std::string path = Make("a", text);
    EXPECT_FALSE(HaveSameBytes(path, Make("b", text.substr(1) + "y")));
    EXPECT_FALSE(HaveSameBytes(path, Make("c", text.substr(1))));
    EXPECT_FALSE(HaveSameBytes(path, Make("d", text + "x")));
}

TEST_F(HaveSameBytesTest, NotOfWhatIsNoFile) {
    const std::string path = Make("a", "");
    std::filesystem::create_directory(folder_.path().string() + "/folder");
    EXPECT_FALSE(HaveSameBytes(path, folder_.path().string() + "/folder"));
    EXPECT_FALSE(HaveSameBytes(folder_.path().string() + "/none", path));
}

}  // namespace
