// SPDX-License-Identifier: MIT

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dng/dnglib.h"
#include "tests/dng/expected_tags.h"
#include "tests/support/capture_stdout.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/files.h"

namespace {

using expected::Mode;
using samples::Long;
using samples::Set;
using Bytes = std::vector<std::uint8_t>;
using Names = std::vector<std::string>;

constexpr int kRawBytes = 96;

void Append(Bytes& out, const Bytes& bytes) {
    out.insert(out.end(), bytes.begin(), bytes.end());
}

/// Assembles a DNG from its parts. The tags must contain their final offsets.
Bytes Assemble(const std::vector<expected::Tags>& ifds, const std::vector<Bytes>& strips) {
    Bytes file = {'I', 'I', 42, 0, 8, 0, 0, 0};
    for (const auto& tags : ifds) {
        Bytes values;
        const auto values_offset = static_cast<std::uint32_t>(file.size()) + samples::TableSize(tags);
        samples::AppendIfd(tags, ByteOrder::kLittleEndian, values_offset, 0, file, values);
        Append(file, values);
    }
    for (const auto& strip : strips) {
        Append(file, strip);
    }
    return file;
}

Bytes RawStrip() {
    Bytes strip;
    for (unsigned int i = 0; i < 48; ++i) {
        strip.push_back(static_cast<std::uint8_t>(331 * i % 256));
        strip.push_back(static_cast<std::uint8_t>(331 * i / 256));
    }
    return strip;
}

/// The file of expected::Record() without preview.
Bytes PlainFile() {
    expected::Tags ifd0 = expected::Ifd0({});
    Set(ifd0, Long(34665, 1040));
    Set(ifd0, Long(273, 1416));
    return Assemble({ifd0, expected::ExifIfd()}, {RawStrip()});
}

/// A record and the tree built for it.
struct Tree {
    explicit Tree(const Mode& mode = {}, bool verbose = false) { Build(mode, verbose); }

    void Build(const Mode& mode, bool verbose = false) {
        dng.createDNGTree(mode.preview, mode.black_level, 92, verbose, mode.raw_variant, false);
    }

    ReadInputData record = expected::Record();
    DNGlib dng{&record, nullptr, nullptr};
};

/// "tag@offset" for every value outside its entry.
std::string Positions(const DNGlib::IFD& ifd) {
    std::string text;
    for (const auto& [tag, entry] : ifd) {
        if (entry.position != 0) {
            text += std::to_string(tag) + "@" + std::to_string(entry.position) + " ";
        }
    }
    return text;
}

std::string ValueOf(const DNGlib::IFD& ifd, std::uint16_t tag) {
    return expected::Hex(ifd.at(tag).value);
}

TEST(FileLayout, PutsIFDsValuesAndRawStripOneAfterTheOther) {
    Tree tree;
    EXPECT_EQ(tree.dng.DoFileLayout(kRawBytes), 1512U);
    EXPECT_EQ(Positions(tree.dng.ifd0()),
              "271@578 272@594 282@612 283@620 305@628 36867@634 37390@654 37391@662 50708@670 50721@696 "
              "50722@768 50723@840 50724@912 50728@984 50731@1008 50732@1016 50735@1024 50738@1032 ");
    EXPECT_EQ(Positions(tree.dng.exif_ifd()),
              "33434@1298 33437@1306 36868@1314 37377@1334 37380@1342 37381@1350 37386@1358 37500@1366 "
              "41988@1374 42016@1382 ");
    EXPECT_EQ(ValueOf(tree.dng.ifd0(), 34665), " 10 04 00 00");  // 1040
    EXPECT_EQ(ValueOf(tree.dng.ifd0(), 273), " 88 05 00 00");    // 1416
    EXPECT_FALSE(tree.dng.ifd0().contains(330));
    EXPECT_TRUE(tree.dng.sub_ifd().empty());
}

TEST(FileLayout, PutsTheSubIFDAfterIFD0AndThePreviewBeforeTheRawStrip) {
    Tree tree({.preview = true});
    EXPECT_EQ(tree.dng.DoFileLayout(kRawBytes), 232120U);
    EXPECT_EQ(Positions(tree.dng.ifd0()),
              "258@506 271@512 272@528 282@546 283@554 305@562 36867@568 37390@588 37391@596 50708@604 "
              "50721@630 50722@702 50723@774 50724@846 50728@918 50731@942 50732@950 50735@958 ");
    EXPECT_EQ(Positions(tree.dng.sub_ifd()), "282@1224 283@1232 50738@1240 ");
    EXPECT_EQ(Positions(tree.dng.exif_ifd()),
              "33434@1506 33437@1514 36868@1522 37377@1542 37380@1550 37381@1558 37386@1566 37500@1574 "
              "41988@1582 42016@1590 ");
    EXPECT_EQ(ValueOf(tree.dng.ifd0(), 330), " C6 03 00 00");     // 966
    EXPECT_EQ(ValueOf(tree.dng.ifd0(), 34665), " E0 04 00 00");   // 1248
    EXPECT_EQ(ValueOf(tree.dng.ifd0(), 273), " 58 06 00 00");     // 1624
    EXPECT_EQ(ValueOf(tree.dng.sub_ifd(), 273), " 58 8A 03 00");  // 1624 + 230400
}

TEST(FileLayout, IsTheSameWhenItIsRepeated) {
    Tree tree({.preview = true});
    tree.dng.DoFileLayout(4);
    EXPECT_EQ(tree.dng.DoFileLayout(kRawBytes), 232120U);
    EXPECT_EQ(ValueOf(tree.dng.ifd0(), 330), " C6 03 00 00");
}

TEST(FileLayout, PadsOddValuesToAnEvenLength) {
    struct Case {
        std::size_t length;
        const char* exif_values;  // of the two values after the maker note
        unsigned int size;
    };
    // A maker note of up to 4 bytes is stored in its entry.
    for (const auto& [length, next, size] :
         {Case{0, "41988@1366 42016@1374 ", 1504}, Case{3, "41988@1366 42016@1374 ", 1504},
          Case{4, "41988@1366 42016@1374 ", 1504}, Case{5, "37500@1366 41988@1372 42016@1380 ", 1510},
          Case{6, "37500@1366 41988@1372 42016@1380 ", 1510},
          Case{7, "37500@1366 41988@1374 42016@1382 ", 1512}}) {
        Tree tree;
        tree.record.Exif.MakerNote.assign(length, 0xEE);
        tree.Build({});
        EXPECT_EQ(tree.dng.DoFileLayout(kRawBytes), size) << length;
        EXPECT_TRUE(Positions(tree.dng.exif_ifd()).ends_with(std::string("37386@1358 ") + next)) << length;
    }
}

TEST(FileLayout, PutsEveryIFDAtAnEvenOffset) {
    for (std::size_t length = 0; length < 8; ++length) {
        Tree tree;
        tree.record.Exif.Make.assign(length, 'M');
        tree.record.Exif.Software.assign(7 - length, 'S');
        for (const bool preview : {false, true}) {
            tree.Build({.preview = preview});
            tree.dng.DoFileLayout(kRawBytes);
            EXPECT_EQ(tree.dng.ifd0().at(34665).value[0] % 2, 0) << length;
            if (preview) {
                EXPECT_EQ(tree.dng.ifd0().at(330).value[0] % 2, 0) << length;
            }
        }
    }
}

TEST(SingleTree, IsWrittenAtTheStreamsPosition) {
    const support::TempFolder folder;
    const std::string path = folder / "tree";
    DNGlib dng(nullptr, nullptr);
    DNGlib::IFD ifd;
    const Bytes five = {'a', 'b', 'c', 'd', 'e'};
    dng.AddIFDTag(&ifd, 300, five.data(), static_cast<std::uint16_t>(7), 5U);
    dng.AddIFDTag(&ifd, 256, static_cast<std::uint16_t>(0x0102));
    dng.AddIFDTag(&ifd, 301, five.data(), 4U);
    dng.AddIFDTag(&ifd, 302, std::string("12345"));
    dng.UpdateIFDTagPos(&ifd, 300, 58);
    dng.UpdateIFDTagPos(&ifd, 302, 64);
    {
        std::ofstream stream(path, std::ios::binary);
        stream << "II";
        EXPECT_EQ(dng.writeSingleTree(stream, &ifd), 0);
        stream << "end";
    }
    const Bytes expected = {
        'I',  'I',                                                 //
        4,    0,                                                   //
        0x00, 0x01, 3,   0,   1,   0, 0, 0, 0x02, 0x01, 0,   0,    // 256
        0x2C, 0x01, 7,   0,   5,   0, 0, 0, 58,   0,    0,   0,    // 300
        0x2D, 0x01, 1,   0,   4,   0, 0, 0, 'a',  'b',  'c', 'd',  // 301
        0x2E, 0x01, 2,   0,   6,   0, 0, 0, 64,   0,    0,   0,    // 302
        0,    0,    0,   0,                                        // link
        0,    0,                                                   // up to the first value, at 58
        'a',  'b',  'c', 'd', 'e', 0,                              //
        '1',  '2',  '3', '4', '5', 0,                              //
        'e',  'n',  'd',
    };
    EXPECT_EQ(support::ReadFile(path), expected);
}

TEST(DngFile, HoldsEveryByteOfALaidOutTree) {
    const support::TempFolder folder;
    Tree tree;
    EXPECT_EQ(tree.dng.writeDNGTree(folder.prefix()), 0);
    const Bytes file = support::ReadFile(folder / "L1000001.DNG");
    EXPECT_EQ(file.size(), 1512U);
    EXPECT_EQ(file, PlainFile());
    EXPECT_EQ(support::Names(folder.path()), Names{"L1000001.DNG"});
}

TEST(DngFile, HoldsEveryByteOfATreeWithPreviewBlackLevelAndOddModel) {
    const support::TempFolder folder;
    const Mode mode = {.preview = true, .black_level = true, .raw_variant = true};
    Tree tree(mode);
    EXPECT_EQ(tree.dng.writeDNGTree(folder.prefix()), 0);

    // The longer model needs 4 bytes more, and the two tags of the black level 24.
    expected::Tags ifd0 = expected::Ifd0(mode);
    Set(ifd0, Long(330, 970));
    Set(ifd0, Long(34665, 1276));
    Set(ifd0, Long(273, 1652));
    expected::Tags sub_ifd = expected::SubIfd(mode);
    Set(sub_ifd, Long(273, 232052));
    const Bytes file = support::ReadFile(folder / "L1000001.DNG");
    EXPECT_EQ(file.size(), 232148U);
    EXPECT_TRUE(file ==
                Assemble({ifd0, sub_ifd, expected::ExifIfd()}, {tree.record.PreviewData, RawStrip()}));
}

TEST(DngFile, TakesImageDataFromTheBuffersGiven) {
    const support::TempFolder folder;
    Tree tree({.preview = true});
    const std::string raw = "raw!";
    const std::string preview(230400, 'p');
    EXPECT_EQ(tree.dng.writeDNGTree(folder.prefix(), "other.RAW", raw.data(), preview.data(), 4, 230400), 0);
    const Bytes file = support::ReadFile(folder / "other.DNG");
    ASSERT_EQ(file.size(), 232028U);
    const std::string text(file.begin(), file.end());
    EXPECT_TRUE(text.ends_with(preview + raw));
}

TEST(DngFile, GoesToTheRecordsFolderWithoutAPrefix) {
    const support::TempFolder folder;
    Tree tree;
    tree.record.Folder = folder.prefix();
    EXPECT_EQ(tree.dng.writeDNGTree(), 0);
    EXPECT_EQ(support::ReadFile(folder / "L1000001.DNG"), PlainFile());
}

TEST(DngFile, ReplacesAnExistingFileOfAnyLength) {
    for (const std::size_t length : {0U, 10U, 5000U}) {
        const support::TempFolder folder;
        support::WriteFile(folder / "L1000001.DNG", std::string(length, 'x'));
        Tree tree;
        tree.dng.writeDNGTree(folder.prefix());
        EXPECT_EQ(support::ReadFile(folder / "L1000001.DNG"), PlainFile());
        EXPECT_EQ(support::Names(folder.path()), Names{"L1000001.DNG"});
    }
}

TEST(DngFile, IsNamedAfterTheSourceUpToItsLastDot) {
    struct Case {
        const char* source;
        const char* name;
    };
    for (const auto& [source, name] : {
             Case{"L1000123.RAW", "L1000123.DNG"},
             Case{"a.b.RAW", "a.b.DNG"},
             Case{"x.", "x.DNG"},
             Case{".RAW", ".DNG"},
             Case{"noextension", "DNG"},
             Case{"", "DNG"},
         }) {
        const support::TempFolder folder;
        Tree tree;
        tree.record.RawFileName = source;
        tree.dng.writeDNGTree(folder.prefix());
        EXPECT_EQ(support::Names(folder.path()), Names{name}) << source;
    }
}

TEST(DngFile, PutsThePrefixInFrontOfTheName) {
    const support::TempFolder folder;
    Tree tree;
    tree.dng.writeDNGTree(folder / "new-");
    EXPECT_EQ(support::Names(folder.path()), Names{"new-L1000001.DNG"});
}

TEST(DngFile, IsReportedInTwoStepsWhenVerbose) {
    const support::TempFolder folder;
    Tree tree;
    const auto output = [&](bool verbose) {
        tree.Build({}, verbose);
        return support::CaptureStdout([&] { tree.dng.writeDNGTree(folder.prefix()); });
    };
    EXPECT_EQ(output(true), "Writing DNG header...Done!\nWriting image data...Done!\n");
    EXPECT_EQ(output(false), "");
}

/// Writes the DNG with `prefix`, expects the result 0, and returns what was printed.
std::string WriteAndCapture(Tree& tree, const std::string& prefix) {
    return support::CaptureStdout([&] { EXPECT_EQ(tree.dng.writeDNGTree(prefix), 0); });
}

class FailedDngFile : public testing::TestWithParam<bool> {
  protected:
    /// The progress that is printed before the line about the failure.
    static std::string Progress(const std::string& text) { return GetParam() ? text : ""; }

    const support::TempFolder folder_;
    const std::string path_ = folder_ / "L1000001.DNG";
};

INSTANTIATE_TEST_SUITE_P(Verbosity, FailedDngFile, testing::Bool(),
                         [](const auto& test) { return test.param ? "Verbose" : "Quiet"; });

TEST_P(FailedDngFile, InAMissingFolderIsReported) {
    Tree tree({}, GetParam());
    EXPECT_EQ(WriteAndCapture(tree, folder_ / "missing/"),
              (folder_ / "missing/L1000001.DNG") + ": DNG not written: No such file or directory\n");
    EXPECT_EQ(support::Names(folder_.path()), Names{});
}

TEST_P(FailedDngFile, UnderTheNameOfAFolderIsReported) {
    std::filesystem::create_directory(path_);
    Tree tree({}, GetParam());
    EXPECT_EQ(WriteAndCapture(tree, folder_.prefix()), path_ + ": DNG not written: Is a directory\n");
    EXPECT_EQ(support::Names(folder_.path()), Names{"L1000001.DNG"});
    EXPECT_EQ(support::Names(path_), Names{});
}

TEST_P(FailedDngFile, WithoutRoomForTheImageLeavesTheOldOne) {
    support::WriteFile(path_, "old");
    Tree tree({.preview = true}, GetParam());
    {
        const support::FileSizeLimit limit(100000);
        EXPECT_EQ(WriteAndCapture(tree, folder_.prefix()),
                  Progress("Writing DNG header...Done!\nWriting image data...\n") + path_ +
                      ": DNG not written: File too large\n");
    }
    EXPECT_EQ(support::Names(folder_.path()), Names{"L1000001.DNG"});
    EXPECT_EQ(support::ReadFile(path_), (Bytes{'o', 'l', 'd'}));
}

TEST_P(FailedDngFile, WithoutRoomForTheHeaderLeavesTheOldOne) {
    support::WriteFile(path_, "old");
    Tree tree;
    tree.record.Exif.MakerNote.assign(60000, 1);
    tree.Build({}, GetParam());
    {
        const support::FileSizeLimit limit(40000);
        EXPECT_EQ(WriteAndCapture(tree, folder_.prefix()),
                  Progress("Writing DNG header...\n") + path_ + ": DNG not written: File too large\n");
    }
    EXPECT_EQ(support::Names(folder_.path()), Names{"L1000001.DNG"});
    EXPECT_EQ(support::ReadFile(path_), (Bytes{'o', 'l', 'd'}));
}

TEST_P(FailedDngFile, WithRoomForHalfOfTheHeaderLeavesNothing) {
    Tree tree({}, GetParam());
    {
        const support::FileSizeLimit limit(1400);
        EXPECT_EQ(WriteAndCapture(tree, folder_.prefix()),
                  Progress("Writing DNG header...\n") + path_ + ": DNG not written: File too large\n");
    }
    EXPECT_EQ(support::Names(folder_.path()), Names{});
}

TEST_P(FailedDngFile, CanBeWrittenLater) {
    Tree tree({}, GetParam());
    {
        const support::FileSizeLimit limit(1400);
        WriteAndCapture(tree, folder_.prefix());
    }
    EXPECT_EQ(WriteAndCapture(tree, folder_.prefix()),
              Progress("Writing DNG header...Done!\nWriting image data...Done!\n"));
    EXPECT_EQ(support::ReadFile(path_), PlainFile());
}

}  // namespace
