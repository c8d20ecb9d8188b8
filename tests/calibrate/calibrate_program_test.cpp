// SPDX-License-Identifier: MIT
// Runs velmarcon-calibrate and checks its output, its exit status and the files it writes.
#include <sys/wait.h>

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "samples/camera_jpeg.h"
#include "samples/sensor_dump.h"
#include "samples/simulated_sensor.h"
#include "sensor/sensdb.h"
#include "tests/end_to_end/killed_program.h"
#include "tests/support/files.h"
#include "tests/support/program.h"

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;
using support::Outcome;

constexpr const char* kDatabase = "sensdb.ini";

samples::SimulatedSensor Sensor() {
    samples::SimulatedSensor sensor;
    sensor.hot_pixels = 300;
    sensor.tracks = 4;
    sensor.dust = 5;
    sensor.defects = {{.column = 1203, .first_row = 700, .dark = 300}, {.column = 2750, .answer = 0}};
    return sensor;
}

/// Exposures are made only once, because the same seed always gives the same exposure.
class CalibrateProgramTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        originals_ = new support::TempFolder;
        for (int i = 0; i < 3; ++i) {
            Expose("dark" + std::to_string(i), {.seed = 50 + static_cast<std::uint64_t>(i)}, 3106091);
        }
        Expose("high", {.iso = 2500, .seed = 60}, 3106091);
        Expose("flat", {.seed = 70, .light = 0.4F}, 3106091);
        Expose("other", {.seed = 80}, 7);
        Expose("leak", {.seed = 90, .light_leak = 100}, 3106091);
        Expose("odd", {.iso = 400, .seed = 100}, 3106091);
    }
    static void TearDownTestSuite() {
        delete originals_;
        originals_ = nullptr;
    }

    static void Expose(const std::string& base, const samples::SimulatedExposure& exposure,
                       std::uint32_t serial) {
        samples::Shot shot;
        shot.iso = exposure.iso;
        shot.serial_number = serial;
        support::WriteFile(*originals_ / (base + ".JPG"), samples::CameraJpeg(samples::CameraExif(shot)));
        support::WriteFile(
            *originals_ / (base + ".RAW"),
            samples::DumpBytes(samples::WordsOfPixels(samples::ExposePixels(Sensor(), exposure))));
    }

    static std::string Original(const std::string& base) { return *originals_ / base; }

    Outcome Run(const Texts& arguments) const {
        return support::RunProgram(VELMARCON_CALIBRATE, arguments, {.folder = folder_.path().string()});
    }
    /// Runs with the database in the test's folder.
    Outcome Make(Texts arguments) const {
        arguments.insert(arguments.begin(), {"--database", kDatabase});
        return Run(arguments);
    }
    std::string Path(const std::string& name) const { return folder_ / name; }

    support::TempFolder folder_;
    static support::TempFolder* originals_;
};

support::TempFolder* CalibrateProgramTest::originals_ = nullptr;

bool Holds(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST_F(CalibrateProgramTest, MakesADatabaseThatTheProgramReads) {
    const Outcome outcome = Make({"--flat", Original("flat"), Original("dark0"), Original("dark1")});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_TRUE(Holds(outcome.output, "Camera 3106091: 2 dark and 1 flat exposures.\n")) << outcome.output;
    EXPECT_TRUE(Holds(outcome.output, "2 of 2 dark\n")) << outcome.output;
    EXPECT_TRUE(Holds(outcome.output, "blind to light")) << outcome.output;
    EXPECT_TRUE(Holds(outcome.output, "sensdb.ini has the new values of camera 3106091.\n"))
        << outcome.output;
    EXPECT_EQ(outcome.errors, "");
    sensdb database(folder_.prefix());
    ASSERT_EQ(database.LoadSensData(), 0);
    const auto& camera = database.Camera(3106091);
    EXPECT_EQ(camera.LevelCorrection.size(), 3968U);
    ASSERT_EQ(camera.Line.size(), 12U);
    EXPECT_EQ(camera.Line[0], 1203);
    EXPECT_NEAR(camera.Line[1], 700, 6);
    EXPECT_EQ(camera.Line[3], 2646);
    EXPECT_EQ(std::vector<std::uint16_t>(camera.Line.begin() + 4, camera.Line.end()),
              (std::vector<std::uint16_t>{2750, 0, 2750, 6, 2750, 6, 2750, 2646}));
}

TEST_F(CalibrateProgramTest, KeepsTheOldDatabaseUnderTheNextNumber) {
    support::WriteFile(Path(kDatabase), "; mine\n[7]\nLine = 1\n");
    support::WriteFile(Path("sensdb.ini.4"), "older");
    ASSERT_EQ(Make({Original("dark0")}).status, 0);
    EXPECT_EQ(support::ReadText(Path("sensdb.ini.5")), "; mine\n[7]\nLine = 1\n");
    EXPECT_EQ(support::ReadText(Path("sensdb.ini.4")), "older");
    const std::string made = support::ReadText(Path(kDatabase));
    EXPECT_TRUE(made.starts_with("; mine\n[7]\nLine = 1\n\n[3106091]\nLine = 1203\n"));
    // A second identical run changes nothing and makes no further copy.
    ASSERT_EQ(Make({Original("dark0")}).status, 0);
    EXPECT_EQ(support::ReadText(Path(kDatabase)), made);
    EXPECT_EQ(support::Names(folder_.path().string()), (Texts{kDatabase, "sensdb.ini.4", "sensdb.ini.5"}));
}

TEST_F(CalibrateProgramTest, ADatabaseMayBeALinkAndStaysOne) {
    fs::create_directory(Path("synced"));
    support::WriteFile(Path("synced/mine.ini"), "[7]\nLine = 1\n");
    fs::create_symlink("synced/mine.ini", Path(kDatabase));
    ASSERT_EQ(Make({Original("dark0")}).status, 0);
    EXPECT_TRUE(fs::is_symlink(Path(kDatabase)));
    EXPECT_TRUE(support::ReadText(Path("synced/mine.ini")).starts_with("[7]\nLine = 1\n"));
    EXPECT_NE(support::ReadText(Path("synced/mine.ini")), "[7]\nLine = 1\n");
    EXPECT_EQ(support::ReadText(Path("sensdb.ini.1")), "[7]\nLine = 1\n");
}

TEST_F(CalibrateProgramTest, ASecondRunFindsTheSameDefects) {
    const Texts arguments = {"--flat", Original("flat"), Original("dark0"), Original("dark1")};
    const std::string first = Make(arguments).output;
    EXPECT_EQ(Make(arguments).output, first);
}

TEST_F(CalibrateProgramTest, ADryRunWritesNothing) {
    const Outcome outcome = Make({"--dry-run", Original("dark0")});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(Holds(outcome.output, "\nsensdb.ini is left as it is.\n")) << outcome.output;
    EXPECT_EQ(support::Names(folder_.path().string()), Texts());
}

TEST_F(CalibrateProgramTest, ExposuresOfTwoCamerasAreRefused) {
    const Outcome outcome = Make({Original("dark0"), Original("other")});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output,
              "other is from camera 7, the exposures before it are from camera 3106091: name exposures of "
              "one camera.\n");
    EXPECT_EQ(support::Names(folder_.path().string()), Texts());
}

TEST_F(CalibrateProgramTest, UnreadableAndBrightExposuresAreNamedAndLeftOut) {
    fs::copy_file(Original("dark1.RAW"), Path("alone.RAW"));
    support::WriteFile(Path("short.RAW"), std::string(1000, 'x'));
    fs::copy_file(Original("dark1.JPG"), Path("short.JPG"));
    const Outcome outcome =
        Make({"alone", "short", "absent", Original("leak"), Original("flat"), Original("dark0")});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(Holds(outcome.output, "absent: there is no such file or folder.\n")) << outcome.output;
    EXPECT_TRUE(Holds(outcome.output, "alone.RAW: Error #0010: Unable to find JPG file.\n"))
        << outcome.output;
    EXPECT_TRUE(Holds(outcome.output, "short.RAW: Error #0008: Damaged RAW file.\n")) << outcome.output;
    EXPECT_TRUE(Holds(outcome.output, "Left out leak: not dark: ")) << outcome.output;
    EXPECT_TRUE(Holds(outcome.output, "Left out flat: not dark: ")) << outcome.output;
    EXPECT_TRUE(Holds(outcome.output, "Camera 3106091: 1 dark and 0 flat exposures.\n")) << outcome.output;
}

TEST_F(CalibrateProgramTest, WithoutADarkExposureNothingIsWritten) {
    const Outcome outcome = Make({Original("flat")});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(outcome.output.ends_with("No dark exposure could be measured.\n")) << outcome.output;
    EXPECT_EQ(support::Names(folder_.path().string()), Texts());
}

TEST_F(CalibrateProgramTest, WrongUsageIsStatusTwo) {
    const Outcome outcome = Run({"--colour", "x"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors,
              "velmarcon-calibrate: unknown option --colour\nTry velmarcon-calibrate --help.\n");
    EXPECT_EQ(Run({}).status, 2);
}

TEST_F(CalibrateProgramTest, PrintsItsVersionAndItsOptions) {
    EXPECT_EQ(Run({"--version"}).output, "velmarcon-calibrate " VELMARCON_VERSION "\n");
    EXPECT_TRUE(Holds(Run({"--help"}).output, "\nusage: velmarcon-calibrate [OPTION]... DARK...\n"));
}

TEST_F(CalibrateProgramTest, AnUnknownIsoSpeedHasTheBaseGain) {
    const Outcome outcome = Make({Original("dark0"), Original("odd")});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(Holds(outcome.output, "Camera 3106091: 2 dark")) << outcome.output;
}

TEST_F(CalibrateProgramTest, ChecksADatabase) {
    const Outcome making = Make({Original("dark0"), Original("dark1")});
    ASSERT_EQ(making.status, 0);
    const std::string black = "With -s the black level is 89: convert with -s -b 89.\n";
    EXPECT_TRUE(making.output.ends_with(black)) << making.output;
    const std::string made = support::ReadText(Path(kDatabase));
    const Outcome good = Make({"--check", Original("high")});
    EXPECT_EQ(good.status, 0);
    EXPECT_TRUE(good.output.ends_with("\nThe database fits.\n" + black)) << good.output;
    EXPECT_EQ(support::ReadText(Path(kDatabase)), made);

    // A database without the defect, then one without the levels.
    std::string without = made;
    without.replace(without.find("Line = 1203"), 11, "Line = 1207");
    support::WriteFile(Path(kDatabase), without.replace(without.rfind("Line = 1203"), 11, "Line = 1207"));
    const Outcome unlisted = Make({"--check", Original("high")});
    EXPECT_EQ(unlisted.status, 1);
    EXPECT_TRUE(Holds(unlisted.output, "\nDefects that are not listed:\n")) << unlisted.output;
    EXPECT_TRUE(
        unlisted.output.ends_with("\nThe database does not fit: list these defects, or make it again.\n"))
        << unlisted.output;

    std::string level = made.substr(0, made.find("LevelCorrection"));
    for (int x = 0; x < samples::kSensorWidth; ++x) {
        level += "LevelCorrection = 0\n";
    }
    support::WriteFile(Path(kDatabase), level);
    const Outcome striped = Make({"--check", Original("high")});
    EXPECT_EQ(striped.status, 1);
    EXPECT_TRUE(striped.output.ends_with("\nThe database does not fit: make it again.\n")) << striped.output;

    support::WriteFile(Path(kDatabase), "");
    const Outcome none = Make({"--check", Original("high")});
    EXPECT_EQ(none.status, 1);
    EXPECT_TRUE(Holds(none.output, "sensdb.ini has no dark levels of camera 3106091.\n")) << none.output;
}

TEST_F(CalibrateProgramTest, TheBlackLevelIsThatOfTheLevelsInTheDatabase) {
    ASSERT_EQ(Make({Original("dark0"), Original("dark1")}).status, 0);
    sensdb database(folder_.prefix());
    ASSERT_EQ(database.LoadSensData(), 0);
    std::string text = "[3106091]\nLine = 1203\nLine = 700\nLine = 1203\nLine = 2646\n";
    for (const float level : database.Camera(3106091).LevelCorrection) {
        text += "LevelCorrection = " + std::to_string(level + 3) + "\n";
    }
    support::WriteFile(Path(kDatabase), text);
    const Outcome outcome = Make({"--check", Original("high")});
    EXPECT_TRUE(outcome.output.ends_with("With -s the black level is 86: convert with -s -b 86.\n"))
        << outcome.output;
}

TEST_F(CalibrateProgramTest, ACheckWithoutADatabaseSaysThatThereIsNone) {
    const Outcome outcome = Make({"--check", Original("high")});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "sensdb.ini: there is no such file yet; without --check it is made.\n");
    EXPECT_EQ(support::Names(folder_.path().string()), Texts());
}

TEST_F(CalibrateProgramTest, ADatabaseThatCannotBeWrittenIsReported) {
    const Outcome outcome = Run({"--database", "nowhere/sensdb.ini", Original("dark0")});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(outcome.output.ends_with(
        "\nnowhere/sensdb.ini: sensor database not written: No such file or directory\n"))
        << outcome.output;
}

TEST_F(CalibrateProgramTest, AFolderStandsForItsPairsEachCountedOnce) {
    for (const std::string base : {"dark0", "dark1"}) {
        for (const std::string extension : {".RAW", ".JPG"}) {
            fs::create_hard_link(Original(base + extension), Path(base + extension));
        }
    }
    const Outcome outcome = Make({".", "./dark0"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(Holds(outcome.output, "Camera 3106091: 2 dark")) << outcome.output;
}

TEST_F(CalibrateProgramTest, AFolderWithoutPairsNamesTheFoldersInItThatHoldSome) {
    for (const std::string name : {"sensor", "sensor/flat", "sensor/dark", "sensor/page", "empty"}) {
        fs::create_directory(Path(name));
    }
    support::WriteFile(Path("sensor/dark/L1000200.RAW"), "");
    support::WriteFile(Path("sensor/flat/L1000203.RAW"), "");
    support::WriteFile(Path("sensor/page/index.html"), "");
    const Outcome outcome = Make({"sensor", "empty"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(
        outcome.output,
        "sensor: there is no RAW file in this folder; name one that has some: sensor/dark, sensor/flat.\n"
        "empty: there is no RAW file in this folder.\n"
        "No dark exposure could be measured.\n");
    for (const std::string name : {"a", "b", "c"}) {
        fs::create_directory(Path("sensor/" + name));
        support::WriteFile(Path("sensor/" + name + "/L1000200.RAW"), "");
    }
    EXPECT_TRUE(Holds(Make({"sensor/"}).output,
                      "name one that has some: sensor/a, sensor/b, sensor/c, sensor/dark and others.\n"))
        << outcome.output;
}

TEST_F(CalibrateProgramTest, MemoryDoesNotGrowWithTheNumberOfExposures) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "AddressSanitizer keeps freed memory and needs memory for itself";
#endif
    const auto peak_of = [&](int count) {
        Texts arguments = {"--dry-run"};
        for (int i = 0; i < count; ++i) {
            const std::string name = "dark" + std::to_string(i);
            for (const std::string extension : {".RAW", ".JPG"}) {
                if (!fs::exists(Path(name + extension))) {
                    fs::create_hard_link(Original("dark" + std::to_string(i % 3) + extension),
                                         Path(name + extension));
                }
            }
            arguments.push_back(name);
        }
        const Outcome outcome = Make(arguments);
        EXPECT_EQ(outcome.status, 0);
        return outcome.peak_kilobytes;
    };
    constexpr long image = 20500;  // kB
    constexpr long levels = 40;    // kB kept per exposure: a number for each column, and a little more
    const long few = peak_of(3);
    EXPECT_LT(few, 6 * image);
    EXPECT_LT(peak_of(100), few + (97 * levels));
}

TEST_F(CalibrateProgramTest, TheBackupMayBeReadByThoseWhoMayReadTheDatabase) {
    for (const fs::perms permissions :
         {fs::perms::owner_read | fs::perms::owner_write,
          fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read}) {
        support::WriteFile(Path(kDatabase), "[7]\nLine = 1\n");
        fs::permissions(Path(kDatabase), permissions);
        fs::remove(Path("sensdb.ini.1"));
        ASSERT_EQ(Make({Original("dark0")}).status, 0);
        for (const char* name : {kDatabase, "sensdb.ini.1"}) {
            EXPECT_EQ(fs::status(Path(name)).permissions(), permissions) << name;
        }
    }
}

TEST_F(CalibrateProgramTest, KilledAtAnyMomentLeavesTheOldOrTheNewDatabase) {
    const std::string old_text = "[7]\nLine = 1\n";
    support::WriteFile(Path(kDatabase), old_text);
    ASSERT_EQ(Make({Original("dark0")}).status, 0);
    const std::string new_text = support::ReadText(Path(kDatabase));
    const end_to_end::KilledProgram run = {
        VELMARCON_CALIBRATE, {"--database", kDatabase, Original("dark0")}, folder_.path().string()};
    int old_ones = 0;
    constexpr int step = 7;
    for (int stop = step;; stop += step) {
        fs::remove(Path(kDatabase));
        fs::remove(Path("sensdb.ini.1"));
        support::WriteFile(Path(kDatabase), old_text);
        const bool killed = run.RunUntilSystemCall(stop);
        const std::string now = support::ReadText(Path(kDatabase));
        ASSERT_TRUE(now == old_text || now == new_text) << "killed at " << stop;
        if (fs::exists(Path("sensdb.ini.1"))) {
            ASSERT_EQ(support::ReadText(Path("sensdb.ini.1")), old_text) << "killed at " << stop;
        }
        ASSERT_TRUE(now == old_text || fs::exists(Path("sensdb.ini.1"))) << "killed at " << stop;
        old_ones += now == old_text ? 1 : 0;
        if (!killed) {
            break;
        }
    }
    EXPECT_GT(old_ones, 10);
}

TEST_F(CalibrateProgramTest, TwoSimultaneousRunsLeaveACompleteDatabaseAndACopyOfTheOldOne) {
    const std::string old_text = "[7]\nLine = 1\n";
    support::WriteFile(Path(kDatabase), old_text);
    const Texts arguments = {"--database", kDatabase, Original("dark0")};
    const support::Start start = {.folder = folder_.path().string()};
    support::TempFolder logs;
    const pid_t first =
        support::StartProgram(VELMARCON_CALIBRATE, arguments, start, {logs / "1", logs / "2"});
    EXPECT_EQ(Make({Original("dark0")}).status, 0);
    int status = 0;
    ASSERT_EQ(::waitpid(first, &status, 0), first);
    EXPECT_EQ(support::ExitStatus(status), 0);
    sensdb database(folder_.prefix());
    ASSERT_EQ(database.LoadSensData(), 0);
    EXPECT_EQ(database.Camera(3106091).LevelCorrection.size(), 3968U);
    EXPECT_EQ(database.Camera(7).Line.size(), 1U);
    EXPECT_EQ(support::ReadText(Path("sensdb.ini.1")), old_text);
}

TEST_F(CalibrateProgramTest, TheReportNamesEveryFileThatItShows) {
    const Outcome outcome =
        Make({"--dry-run", "--report", "page", "--flat", Original("flat"), Original("dark0"), "absent <b>"});
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    const std::string page = support::ReadText(Path("page/index.html"));
    EXPECT_TRUE(Holds(page, "<h1>Sensor of camera 3106091</h1>"));
    EXPECT_TRUE(Holds(page, "<td>1203</td>"));
    EXPECT_TRUE(Holds(page, "<li>absent &lt;b&gt;: there is no such file or folder</li>"));
    EXPECT_TRUE(Holds(page, "velmarcon-calibrate --database sensdb.ini --dry-run --report page --flat "));
    std::size_t shown = 0;
    const std::string source = "<img src=\"";
    for (std::size_t at = page.find(source); at != std::string::npos; at = page.find(source, at + 1)) {
        const std::size_t begin = at + source.size();
        const std::string file = page.substr(begin, page.find('"', begin) - begin);
        EXPECT_TRUE(fs::exists(Path("page/" + file))) << file;
        ++shown;
    }
    // Without gnuplot the page says so; with it, the page shows every file of the folder.
    EXPECT_TRUE(shown >= 5 || Holds(page, "gnuplot is not installed")) << shown;
    EXPECT_EQ(support::Names(Path("page")).size(), shown + 1);
}

TEST_F(CalibrateProgramTest, AReportReplacesOnlyAReport) {
    const Texts arguments = {"--dry-run", "--report", "page", Original("dark0")};
    fs::create_directory(Path("page"));
    support::WriteFile(Path("page/index.html"), "<h1>Mine</h1>\n");
    const Outcome refused = Make(arguments);
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(Holds(refused.output,
                      "page: report not written: index.html there is not a report of velmarcon-calibrate; "
                      "name another folder\n"))
        << refused.output;
    EXPECT_EQ(support::ReadText(Path("page/index.html")), "<h1>Mine</h1>\n");
    EXPECT_EQ(support::Names(Path("page")), Texts{"index.html"});
    fs::remove(Path("page/index.html"));
    EXPECT_EQ(Make(arguments).status, 0);
    EXPECT_EQ(Make(arguments).status, 0);
}

}  // namespace
