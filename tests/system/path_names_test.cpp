// SPDX-License-Identifier: MIT
#include "system/path_names.h"

#include <cstdint>
#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace {

using namespace path_names;

TEST(PathNames, AreDividedAtTheLastDot) {
    struct Case {
        const char* name;
        const char* base;
        const char* extension;
    };
    for (const auto& [name, base, extension] :
         {Case{"L1000123.RAW", "L1000123", "RAW"}, Case{"a.b.DNG", "a.b", "DNG"},
          Case{"README", "README", "README"}, Case{".RAW", "", "RAW"}, Case{"x.", "x", ""},
          Case{"", "", ""}}) {
        EXPECT_EQ(BaseName(name), base);
        EXPECT_EQ(Extension(name), extension);
    }
}

TEST(PathNames, GetAnotherExtensionAfterTheirLastDot) {
    EXPECT_EQ(WithExtension("a.b", kRawExtension), "a.b.RAW");
    EXPECT_EQ(WithOtherExtension("L1000123.RAW", kDngExtension), "L1000123.DNG");
    EXPECT_EQ(WithOtherExtension("a.b.RAW", kDngExtension), "a.b.DNG");
    EXPECT_EQ(WithOtherExtension("README", kDngExtension), "DNG");
}

TEST(PathNames, AreDividedAtTheLastSeparatorOfEitherKind) {
    EXPECT_EQ(FolderPart("a/b\\c.RAW"), "a/b\\");
    EXPECT_EQ(FileNamePart("a/b\\c.RAW"), "c.RAW");
    EXPECT_EQ(FolderPart("c.RAW"), "");
    EXPECT_EQ(FileNamePart("c.RAW"), "c.RAW");
    EXPECT_EQ(FolderPart("/c"), "/");
    EXPECT_EQ(FileNamePart("c/"), "");
}

#if !defined(_WIN32)
TEST(PathNames, MayContainABackslashThatSeparatesNothing) {
    EXPECT_EQ(SystemFolderPart("a/b\\c.RAW"), "a/");
    EXPECT_EQ(SystemFileNamePart("a/b\\c.RAW"), "b\\c.RAW");
    EXPECT_EQ(SystemFolderPart("b\\c.RAW"), "");
    EXPECT_EQ(SystemFileNamePart("b\\c.RAW"), "b\\c.RAW");
}
#endif

TEST(PathNames, GetASeparatorOnlyWhereTheyLackOne) {
    EXPECT_EQ(WithSeparator("/tmp"), "/tmp/");
    EXPECT_EQ(WithSeparator("/tmp/"), "/tmp/");
    EXPECT_EQ(WithSeparator("tmp\\"), "tmp\\");
    EXPECT_EQ(WithSeparator("/"), "/");
    EXPECT_EQ(WithSeparator("."), "./");
    EXPECT_EQ(WithSeparator(""), "");
}

TEST(PathNames, OfPartFilesTellWhoWritesThem) {
    const std::string name = PartName({"box", 77}, 0xAB);
    EXPECT_EQ(name, ".velmarcon-box-77-00000000000000ab.part");
    const auto part = ParsePartName(name);
    ASSERT_TRUE(part.has_value());
    EXPECT_EQ(part->host, "box");
    EXPECT_EQ(part->process, 77U);
}

TEST(PathNames, OfPartFilesContainAnyComputersName) {
    EXPECT_EQ(HostPart("a-b.c"), "a-b.c");
    EXPECT_EQ(HostPart("a/b c"), "a_b_c");
    EXPECT_EQ(HostPart(""), "host");
    EXPECT_EQ(HostPart(std::string(40, 'x')), std::string(32, 'x'));
    EXPECT_EQ(ParsePartName(PartName({"a-b", 77}, 1)).value_or(Part()).host, "a-b");
}

TEST(PathNames, OfPartFilesOfAnOlderVersionTellNoComputer) {
    const auto part = ParsePartName(".velmarcon-77.part");
    ASSERT_TRUE(part.has_value());
    EXPECT_EQ(part->host, "");
    EXPECT_EQ(part->process, 77U);
}

TEST(PathNames, OfPartFilesOfAnOlderLauncherTellTheProcess) {
    EXPECT_EQ(ParseLauncherPartName(".lensdb-77.part"), 77U);
    EXPECT_EQ(ParseLauncherPartName(".sensdb.ini-78.part"), 78U);
    for (const char* name :
         {".lensdb-.part", ".lensdb-x.part", ".lensdb-7.ini", ".other-7.part", ".lensdb-"}) {
        EXPECT_FALSE(ParseLauncherPartName(name).has_value()) << name;
    }
}

TEST(PathNames, OfOtherFilesAreNotThoseOfPartFiles) {
    for (const char* name :
         {"", ".part", "L1.DNG", ".velmarcon-.part", ".velmarcon-x.part", ".velmarcon-7-1.part",
          ".velmarcon-box-7x-1.part", ".velmarcon-box-7-g.part", ".velmarcon-box-7-1.part2", kReportPart}) {
        EXPECT_FALSE(ParsePartName(name).has_value()) << name;
    }
}

TEST(PathNames, OfOldCopiesHaveANumberFromTheSecondOn) {
    EXPECT_EQ(OldName("L1.DNG"), "L1.DNG.old");
    EXPECT_EQ(OldName("L1.DNG", 1), "L1.DNG.old");
    EXPECT_EQ(OldName("L1.DNG", kMostOldNames), "L1.DNG.old9");
    EXPECT_EQ(NameOfOld("L1.DNG.old"), "L1.DNG");
    EXPECT_EQ(NameOfOld("L1.DNG.old2"), std::nullopt);
    EXPECT_EQ(NameOfOld("L1.DNG"), std::nullopt);
}

TEST(PathNames, OfBackupsEndInANumber) {
    EXPECT_EQ(NumberedName("a/sensdb.ini", 12), "a/sensdb.ini.12");
    EXPECT_EQ(NumberIn("sensdb.ini.12", "sensdb.ini"), 12U);
    for (const char* name : {"sensdb.ini", "sensdb.ini.", "sensdb.ini.0", "sensdb.ini.01", "sensdb.ini.7x",
                             "sensdb.ini.-3", "sensdb.ini.+4", "sensdb.ini.9999999999", "other.ini.6"}) {
        EXPECT_EQ(NumberIn(name, "sensdb.ini"), 0U) << name;
    }
}

}  // namespace
