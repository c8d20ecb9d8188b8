// SPDX-License-Identifier: MIT
// The installed command. The program looks for its databases in the folder of argv[0]; this starts it with
// one in a folder of the user's own, where they can be edited without being root and outlive the package.
#include <cstdio>
#include <filesystem>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "app/command_line.h"
#include "errors/version.h"
#include "exif/lensdb.h"
#include "packaging/command_line_remarks.h"
#include "packaging/databases.h"
#include "packaging/help_text.h"
#include "packaging/kept_sensor_database.h"
#include "system/path_names.h"
#include "system/posix/program.h"
#include "system/posix/write_signals.h"
#include "system/system_error.h"

namespace {

namespace fs = std::filesystem;

constexpr int kNotKept = 73;    // EX_CANTCREAT of <sysexits.h>
constexpr int kNotFound = 127;  // as the shells have it
constexpr int kNotStarted = 126;

/// Where the rest of the package lies, seen from the folder above the launcher's own.
constexpr const char* kProgram = "lib/velmarcon/velmarcon";

void PrintVersion() {
    std::printf("velmarcon %s\n", kVersion);
}

/// Prints to standard error, so that what the program prints stays the same.
void Say(const std::string& text) {
    std::fprintf(stderr, "velmarcon: %s\n", text.c_str());
}

void SayWhichFolder(const Databases& databases) {
    if (!databases.no_own_folder.empty()) {
        Say("no data folder of your own (" + databases.no_own_folder + "): using the one of the package, " +
            databases.folder.string());
    }
}

bool Asks(std::span<const Argument> arguments, Option option) {
    return FindOption(arguments, option) != nullptr;
}

/// The program opens a database only for -l, and for -s and its kind.
bool NeedsDatabases(std::span<const Argument> arguments) {
    return Asks(arguments, Option::kLensFix) || Asks(arguments, Option::kSensorFix) ||
           Asks(arguments, Option::kDarkFieldCreation) || Asks(arguments, Option::kPixelLineTest) ||
           Asks(arguments, Option::kRowOffsetEstimation);
}

/// An empty database if it is missing or memory runs out; the program itself reports that.
lensdb LoadLenses(const fs::path& folder) {
    lensdb lenses((folder / "").string());
    try {
        (void)lenses.LoadLensData();
    } catch (const std::bad_alloc&) {
        lenses.Lenses.clear();
    }
    return lenses;
}

/// The lens database is read only when a code is to be looked up.
void SayWhatIsPassedOver(std::span<const Argument> arguments, const fs::path& databases) {
    for (const std::string& remark : RemarksOn(arguments)) {
        Say(remark);
    }
    if (const Argument* code = LensCodeIn(arguments); code != nullptr) {
        const std::string remark = RemarkOnLensCode(*code, arguments, LoadLenses(databases));
        if (!remark.empty()) {
            Say(remark);
        }
    }
}

/// Before -sd. Returns 0, or the exit status when the run would lose what is there.
int KeepDatabase(const Databases& databases) {
    const std::string database = (databases.folder / path_names::kSensorDatabase).string();
    if (!databases.no_own_folder.empty()) {
        Say(database + ": cannot be written by -sd: set XDG_DATA_HOME to a folder of your own");
        return kNotKept;
    }
    if (const std::error_code error = KeepSensorDatabase(database)) {
        Say(database + ": no backup could be made, so nothing was run: " + system_error::Text(error));
        return kNotKept;
    }
    return 0;
}

/// The exit status of what was only printed.
int Printed() {
    return std::fflush(stdout) == 0 ? 0 : 1;
}

/// Becomes the program. Returns only when that fails, with the exit status.
int StartProgram(const fs::path& file, const fs::path& folder, std::span<char*> arguments) {
    std::vector<std::string> handed_over = {(folder / "velmarcon").string()};
    if (!arguments.empty()) {
        handed_over.insert(handed_over.end(), arguments.begin() + 1, arguments.end());
    }
    const std::error_code error = program::Become(file, std::move(handed_over));
    Say(file.string() + ": cannot be started: " + system_error::Text(error));
    return error == std::errc::no_such_file_or_directory ? kNotFound : kNotStarted;
}

}  // namespace

int main(int argc, char* argv[]) {
    const std::span<char*> arguments(argv, static_cast<std::size_t>(argc));
    const std::string_view first = arguments.size() > 1 ? arguments[1] : "";
    if (first == "--help") {
        PrintVersion();
        std::printf("%s", kHelpText);
        return Printed();
    }
    if (first == "--version") {
        PrintVersion();
        return Printed();
    }
    IgnoreWriteSignals();
    // The rest of the package is found from there, wherever it was installed.
    const fs::path own = program::OwnFile().value_or(VELMARCON_INSTALLED_LAUNCHER);
    const fs::path installed = own.parent_path().parent_path();
    const Databases databases = PrepareDatabases(installed);
    for (const std::string& remark : databases.remarks) {
        Say(remark);
    }
    if (first == "--where") {
        SayWhichFolder(databases);
        std::printf("%s\n", databases.folder.c_str());
        return Printed();
    }
    const std::vector<Argument> read = ReadCommandLine(arguments);
    if (NeedsDatabases(read)) {
        SayWhichFolder(databases);
    }
    SayWhatIsPassedOver(read, databases.folder);
    if (Asks(read, Option::kDarkFieldCreation)) {
        if (const int status = KeepDatabase(databases); status != 0) {
            return status;
        }
    }
    return StartProgram(installed / kProgram, databases.folder, arguments);
}
