// SPDX-License-Identifier: MIT
#include "app/input_discovery.h"

#include <dirent.h>
#include <dlfcn.h>
#include <sys/stat.h>

#include <algorithm>
#include <ostream>
#include <vector>

#include <gtest/gtest.h>

#include "tests/app/working_folder.h"
#include "tests/support/files.h"

namespace {

bool listing_tells_types = true;

}  // namespace

/// Replaces the C library's readdir, to simulate a file system whose listing lacks the types of its entries.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): the C library's are reserved names
extern "C" dirent* readdir(DIR* folder) {
    using Readdir = dirent* (*)(DIR*);
    // With 64-bit file offsets, calls of readdir use the first of the two names, and so does this function.
    static void* const found = ::dlsym(RTLD_NEXT, "readdir64");
    static const auto next =
        reinterpret_cast<Readdir>(found != nullptr ? found : ::dlsym(RTLD_NEXT, "readdir"));
    dirent* const entry = next(folder);
    if (entry != nullptr && !listing_tells_types) {
        entry->d_type = DT_UNKNOWN;
    }
    return entry;
}

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

constexpr std::uintmax_t kCameraDngSize = 10575296;
constexpr std::uintmax_t kLargestSingleDng = 15000000;

Names Sorted(Names names) {
    std::ranges::sort(names);
    return names;
}

/// A folder with one entry of every kind.
class FileList : public testing::TestWithParam<bool> {
  protected:
    void SetUp() override {
        MakeFile(folder_ / "a.RAW");
        MakeFile(folder_ / "b.raw");
        MakeFile(folder_ / "b2.Raw");
        MakeFile(folder_ / "c.JPG");
        MakeFile(folder_ / "d.DNG", kCameraDngSize);
        MakeFile(folder_ / "d2.dng", kCameraDngSize);
        MakeFile(folder_ / "e.DNG", 20000000);
        MakeFile(folder_ / "e2.DNG", kCameraDngSize - 1);
        MakeFile(folder_ / "e3.DNG", kCameraDngSize + 1);
        MakeFile(folder_ / "e4.DNG", 0);
        MakeFile(folder_ / "h.x.RAW");
        MakeFile(folder_ / "RAW");
        MakeFile(folder_ / "README");
        MakeFile(folder_ / "xRAW");
        MakeFile(folder_ / "y.RAW.JPG");
        MakeFile(folder_ / "z.", 0);
        MakeFile(folder_ / ".RAW");
        fs::create_directory(folder_ / "f.RAW");
        fs::create_directory(folder_ / "f.DNG");
        fs::create_directory(folder_ / "target");
        fs::create_symlink("target", folder_ / "g.RAW");
        fs::create_symlink("target", folder_ / "g.DNG");
        fs::create_symlink("nowhere", folder_ / "g2.RAW");
        fs::create_symlink("nowhere", folder_ / "g2.DNG");
        fs::create_symlink("d.DNG", folder_ / "g3.DNG");
        ASSERT_EQ(::mkfifo((folder_ / "p.DNG").c_str(), 0600), 0);
        listing_tells_types = GetParam();
    }
    void TearDown() override { listing_tells_types = true; }

    const support::TempFolder folder_;
};

INSTANTIATE_TEST_SUITE_P(TypesOfTheListing, FileList, testing::Bool(),
                         [](const auto& test) { return test.param ? "Told" : "Untold"; });

TEST_P(FileList, HoldsRawFilesAndDngsOfTheCameraSize) {
    EXPECT_EQ(Sorted(GetFileList(folder_.prefix())),
              (Names{".RAW", "RAW", "a.RAW", "d.DNG", "g.RAW", "g2.RAW", "g3.DNG", "h.x.RAW"}));
}

TEST_P(FileList, AppendsNamesToTheFolderWithoutASeparator) {
    // Without a separator, "." and "d.DNG" give ".d.DNG", which has another size or does not exist.
    const WorkingFolder working(folder_.path());
    MakeFile(".e.DNG", kCameraDngSize);
    EXPECT_EQ(Sorted(GetFileList(".")),
              (Names{".RAW", "RAW", "a.RAW", "e.DNG", "g.RAW", "g2.RAW", "h.x.RAW"}));
    EXPECT_EQ(Sorted(GetFileList("./")),
              (Names{".RAW", ".e.DNG", "RAW", "a.RAW", "d.DNG", "g.RAW", "g2.RAW", "g3.DNG", "h.x.RAW"}));
}

TEST(GetFileList, IsEmptyForAFolderThatCannotBeRead) {
    const support::TempFolder folder;
    MakeFile(folder / "a.RAW");
    EXPECT_EQ(GetFileList(folder / "missing/"), Names{});
    EXPECT_EQ(GetFileList(folder / "a.RAW"), Names{});
    EXPECT_EQ(GetFileList(""), Names{});
}

TEST(GetFileList, KeepsTheOrderOfTheListing) {
    const support::TempFolder folder;
    for (const char* name : {"m.RAW", "z.RAW", "a.RAW", "k.RAW", "B.RAW", "0.RAW"}) {
        MakeFile(folder / name);
    }
    Names listed;
    for (const auto& entry : fs::directory_iterator(folder.path())) {
        listed.push_back(entry.path().filename());
    }
    EXPECT_EQ(GetFileList(folder.prefix()), listed);
}

TEST(CurrentFolder, IsSearchedByItsShortName) {
    const support::TempFolder folder;
    const WorkingFolder working(folder.path());
    MakeFile("a.RAW");
    const InputFiles input = CurrentFolder();
    EXPECT_EQ(input.folder, "./");
    EXPECT_EQ(input.names, Names{"a.RAW"});
}

/// Resolves `path` in the current folder. Returns "code name | folder | names".
std::string Resolve(const std::string& path) {
    InputFiles input;
    const InputError error = ResolveInput(path, input);
    std::string text = std::to_string(error.code) + " " + error.name + "|" + input.folder + "|";
    for (const auto& name : Sorted(input.names)) {
        text += name + " ";
    }
    return text;
}

struct ResolveCase {
    const char* name;
    const char* path;
    const char* result;

    friend void PrintTo(const ResolveCase& test, std::ostream* out) { *out << test.name; }
};

class ResolvedInput : public testing::TestWithParam<ResolveCase> {};

TEST_P(ResolvedInput, IsFolderAndNamesOrAnError) {
    const support::TempFolder folder;
    const WorkingFolder working(folder.path());
    for (const char* name : {"card", "empty", "back\\", "dir.RAW"}) {
        fs::create_directory(name);
    }
    for (const char* file : {"card/a.RAW", "card/b.RAW", "card/photo.jpg", "card/both.RAW", "card/x.y.RAW",
                             "card/README", "RAW", "card/noextension", "back\\/c.RAW", "win\\d.RAW",
                             "dir.RAW/e.RAW", "card/plain", "card/plain.RAW"}) {
        MakeFile(file);
    }
    MakeFile("card/both.DNG", 1);
    MakeFile("card/camera.DNG", kCameraDngSize);
    MakeFile("card/small.DNG", 7);
    MakeFile("card/largest.DNG", kLargestSingleDng);
    MakeFile("card/over.DNG", kLargestSingleDng + 1);
    ASSERT_EQ(::mkfifo("card/pipe.DNG", 0600), 0);
    fs::create_symlink("over.DNG", "card/link.DNG");

    EXPECT_EQ(Resolve(GetParam().path), GetParam().result);
}

constexpr const char* kBadInput = "2 ||";

const std::vector<ResolveCase> kResolveCases = {
    {"Folder", "card", "0 |card/|a.RAW b.RAW both.RAW camera.DNG plain.RAW x.y.RAW "},
    {"FolderWithSeparator", "card/", "0 |card/|a.RAW b.RAW both.RAW camera.DNG plain.RAW x.y.RAW "},
    {"FolderWithTwoSeparators", "card//", "0 |card//|a.RAW b.RAW both.RAW camera.DNG plain.RAW x.y.RAW "},
    {"FolderEndingInBackslash", "back\\", "0 |back\\|c.RAW "},
    {"FolderWithExtension", "dir.RAW", "0 |dir.RAW/|e.RAW "},
    {"EmptyFolder", "empty", "5 |empty/|"},
    {"File", "card/a.RAW", "0 |card/|a.RAW "},
    {"FileWithoutFolder", "RAW", "0 ||RAW "},
    {"FileBehindBackslash", "win\\d.RAW", "0 |win\\|d.RAW "},
    {"RawExtensionAdded", "card/a", "0 |card/|a.RAW "},
    {"RawExtensionAddedBehindADot", "card/x.y", "0 |card/|x.y.RAW "},
    {"RawBeforeDng", "card/both", "0 |card/|both.RAW "},
    {"DngExtensionAdded", "card/camera", "0 |card/|camera.DNG "},
    {"DngOfAnyLength", "card/small.DNG", "0 |card/|small.DNG "},
    {"LargestDng", "card/largest.DNG", "0 |card/|largest.DNG "},
    {"LargestDngWithExtensionAdded", "card/largest", "0 |card/|largest.DNG "},
    {"TooLargeDng", "card/over.DNG", "19 over.DNG||"},
    {"TooLargeDngWithExtensionAdded", "card/over", "19 over.DNG||"},
    {"LinkToTooLargeDng", "card/link", "19 link.DNG||"},
    {"OtherExtension", "card/photo.jpg", kBadInput},
    {"NoExtension", "card/README", kBadInput},
    {"FileItselfBeforeItsRaw", "card/plain", kBadInput},
    {"Missing", "card/missing", kBadInput},
    {"MissingFolder", "missing/a", kBadInput},
    {"Pipe", "card/pipe.DNG", kBadInput},
    {"PipeWithExtensionAdded", "card/pipe", kBadInput},
    {"Device", "/dev/null", kBadInput},
    {"Empty", "", kBadInput},
};

INSTANTIATE_TEST_SUITE_P(Paths, ResolvedInput, testing::ValuesIn(kResolveCases),
                         testing::PrintToStringParamName());

TEST(FileSystemTests, TellFoldersFromFiles) {
    struct Case {
        const char* path;
        bool folder;
        bool file;
    };
    const support::TempFolder folder;
    const WorkingFolder working(folder.path());
    fs::create_directory("folder");
    MakeFile("file");
    fs::create_symlink("folder", "to_folder");
    fs::create_symlink("file", "to_file");
    fs::create_symlink("nowhere", "to_nowhere");
    ASSERT_EQ(::mkfifo("pipe", 0600), 0);
    for (const auto& [path, is_folder, is_file] : {
             Case{"folder", true, false},
             Case{"folder/", true, false},
             Case{"file", false, true},
             Case{"file/", false, false},
             Case{"to_folder", true, false},
             Case{"to_file", false, true},
             Case{"to_nowhere", false, false},
             Case{"pipe", false, false},
             Case{"/dev/null", false, false},
             Case{"missing", false, false},
             Case{"", false, false},
         }) {
        EXPECT_EQ(isdir(path), is_folder) << path;
        EXPECT_EQ(isfile(path), is_file) << path;
    }
}

}  // namespace
