// SPDX-License-Identifier: MIT
#include "system/ini_file.h"

#include <cstdint>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/files.h"
#include "tests/support/short_file.h"

namespace {

using namespace std::string_literals;

/// The result of loading a file of `text`.
struct Loaded {
    int result = 1;
    bool complete = false;
    std::string value;  ///< of Key in [section]
};

Loaded Load(const std::string& text) {
    const support::TempFolder folder;
    support::WriteFile(folder / "file.ini", text);
    ini_file::File ini;
    Loaded loaded;
    const auto read = ini_file::Read(folder / "file.ini");
    loaded.result = read ? ini_file::Parse(*read, ini, loaded.complete) : SI_FILE;
    loaded.value = ini.GetValue("section", "Key", "none");
    return loaded;
}

TEST(SimpleIni, ReadsAWholeText) {
    const Loaded loaded = Load("[section]\nKey = value");
    EXPECT_EQ(loaded.result, 0);
    EXPECT_TRUE(loaded.complete);
    EXPECT_EQ(loaded.value, "value");
}

TEST(SimpleIni, ReadsAnEmptyFile) {
    const Loaded loaded = Load("");
    EXPECT_EQ(loaded.result, 0);
    EXPECT_TRUE(loaded.complete);
}

TEST(SimpleIni, StopsAtANulAndReportsIt) {
    const Loaded loaded = Load("[section]\n\0Key = value\n"s);
    EXPECT_EQ(loaded.result, 0);
    EXPECT_FALSE(loaded.complete);
    EXPECT_EQ(loaded.value, "none");
    EXPECT_FALSE(Load("[section]\nKey = value\n\0"s).complete);
}

TEST(SimpleIni, SkipsAByteOrderMark) {
    EXPECT_EQ(Load("\xEF\xBB\xBF[section]\nKey = value\n").value, "value");
}

TEST(SimpleIni, LoadsFilesUpToTheSizeLimit) {
    std::string text = "[section]\nKey = value\n";
    text.resize(ini_file::kLongestFile, '\n');
    EXPECT_EQ(Load(text).value, "value");
    EXPECT_LT(Load(text + "\n").result, 0);
    EXPECT_EQ(Load(text + "\n").value, "none");
}

TEST(SimpleIni, AFileThatCannotBeReadCompletelyIsAnError) {
    const std::string odd = support::kFileShorterThanItsLength;
    if (!std::filesystem::exists(odd)) {
        GTEST_SKIP() << odd << " does not exist";
    }
    ini_file::File ini;
    EXPECT_LT(ini_file::Load(odd, ini), 0);
}

}  // namespace
