// SPDX-License-Identifier: MIT
#include "errors/error_handler.h"

#include <array>
#include <functional>

#include <gtest/gtest.h>

#include "tests/support/capture_stdout.h"

namespace {

constexpr const char* kUsage =
    "###################\n"
    "# velmarcon v" VELMARCON_VERSION
    " #\n"
    "###################\n"
    "Program converts Leica M8 RAW+JPEG pairs to DNG.\n"
    "\n"
    "Usage: velmarcon.exe -par1 val1 -par2 val2 ...\n"
    "\n"
    "Par  [vals]/<opt>  meaning                           {defval}:\n"
    "\n"
    "-i   [folder/file] input                             {path to executable}\n"
    "-o   [folder]      output                            {input folder}\n"
    "-v                 verbose\n"
    "-r                 refresh: overwrite existing DNG\n"
    "-p                 preview image in DNG\n"
    "-b   <val>         blacklevel set                    {val=92}\n"
    "-l   <6bit>        lens exif fix                     {code from exif}\n"
    "-s                 sensor errors fix\n"
    "-sd                sensor darkfield creation\n"
    "-st                sensor test pixel line fix\n"
    "\n"
    "The manual, with examples for every option, is the file README.md.\n"
    "Copyright (c) 2026 the velmarcon authors, MIT License.\n"
    "\n";

struct Message {
    int code;
    const char* line;
};

constexpr std::array kMessages = {
    Message{0, "Unknown Error, please contact Author.\n"},
    Message{2, "Error #0002: Given input (-i) is not a folder or supported RAW file.\n"},
    Message{3, "Error #0003: No RAW folder defined, automatic path acquisition failed.\n"},
    Message{4, "Error #0004: Given output folder (-o) does not exist or is no folder.\n"},
    Message{5, "Error #0005: No RAW files found in folder.\n"},
    Message{6, "Error #0006: Unable to find RAW file.\n"},
    Message{7, "Error #0007: Unable to read RAW file.\n"},
    Message{8, "Error #0008: Damaged RAW file.\n"},
    Message{9, "Error #0009: Damaged EXIF in JPG.\n"},
    Message{10, "Error #0010: Unable to find JPG file.\n"},
    Message{11, "Error #0011: Unable to read JPG file.\n"},
    Message{12, "Error #0012: Missing lens database file lensdb.ini.\n"},
    Message{13, "Error #0013: Lens could not be detected.\n"},
    Message{14, "Error #0014: No Sensor database found.\n"},
    Message{15, "Error #0015: Too many images for creating sensor level reference.\n"},
    Message{16, "Error #0016: Damaged BIA file.\n"},
    Message{17, "Error #0017: Damaged DNG file.\n"},
    Message{18, "Error #0018: Darkfield estimation not possible from DNG file.\n"},
    Message{19, "Error #0019: File was created from RAW+JPG or is not a Leica M8 DNG.\n"},
    Message{20, "Unknown Error, please contact Author.\n"},
    Message{1982, "Unknown Error, please contact Author.\n"},
    Message{-1, "Unknown Error, please contact Author.\n"},
};

/// Expects that `print` prints `text` and returns `result`.
void ExpectPrint(const std::function<int()>& print, const std::string& text, int result) {
    int returned = -1000;
    EXPECT_EQ(support::CaptureStdout([&] { returned = print(); }), text);
    EXPECT_EQ(returned, result) << text;
}

TEST(ErrorHandler, PrintsTheLineOfACodeAndReturnsTheCode) {
    const ErrorHandler errors;
    for (const auto& [code, line] : kMessages) {
        ExpectPrint([&, c = code] { return errors.PrintError(c); }, line, code);
        ExpectPrint([&, c = code] { return errors.PrintError(c, ""); }, line, code);
    }
}

TEST(ErrorHandler, PutsTheNameInFrontOfTheLine) {
    const ErrorHandler errors;
    for (const auto& [code, line] : kMessages) {
        ExpectPrint([&, c = code] { return errors.PrintError(c, "L1000123.DNG"); },
                    std::string("L1000123.DNG: ") + line, code);
    }
}

TEST(ErrorHandler, ErrorTextPrintsTheSameAndReturnsZero) {
    const ErrorHandler errors;
    for (const auto& [code, line] : kMessages) {
        ExpectPrint([&, c = code] { return errors.ErrorText(c, ""); }, line, 0);
        ExpectPrint([&, c = code] { return errors.ErrorText(c, "x"); }, std::string("x: ") + line, 0);
    }
}

TEST(ErrorHandler, PrintsBannerAndUsageForCodeOne) {
    const ErrorHandler errors;
    ExpectPrint([&] { return errors.PrintError(1); }, kUsage, 1);
    ExpectPrint([&] { return errors.UsageText(); }, kUsage, 0);
}

TEST(ErrorHandler, DoesNotKnowCodeOneWithAName) {
    const ErrorHandler errors;
    ExpectPrint([&] { return errors.PrintError(1, "x"); }, "x: Unknown Error, please contact Author.\n", 1);
    ExpectPrint([&] { return errors.ErrorText(1, ""); }, "Unknown Error, please contact Author.\n", 0);
}

TEST(ErrorHandler, TakesPercentSignsInANameAsTheyAre) {
    const ErrorHandler errors;
    ExpectPrint([&] { return errors.PrintError(6, "%s%n.RAW"); },
                "%s%n.RAW: Error #0006: Unable to find RAW file.\n", 6);
}

}  // namespace
