// SPDX-License-Identifier: MIT
#include "calibrate/calibrate_run.h"

#include <cstdio>
#include <new>

#include "calibrate/calibrate_options.h"
#include "calibrate/database_check.h"
#include "calibrate/database_file.h"
#include "calibrate/database_text.h"
#include "calibrate/findings_text.h"
#include "calibrate/measuring.h"
#include "calibrate/report.h"
#include "errors/not_written.h"
#include "errors/version.h"
#include "system/file_system.h"
#include "system/path_names.h"
#include "system/system_error.h"

namespace {

constexpr const char* kName = "velmarcon-calibrate";

int Refuse(const std::string& problem) {
    (void)std::fprintf(stderr, "%s: %s\nTry %s --help.\n", kName, problem.c_str(), kName);
    return kWrongUsage;
}

int NotWritten(const std::string& path, const std::string& reason) {
    std::printf("\n");
    PrintNotWritten(path, output_names::kSensorDatabase, reason.c_str());
    return kNotCalibrated;
}

/// The database of a run and its content at the start of the run.
struct Database {
    std::string path;
    std::string text;
    std::string problem;  ///< why it cannot be read
    std::function<std::error_code()> make_folder;
};

std::vector<ListedRows> RowsToList(const Calibration& calibration, bool doubtful) {
    std::vector<ListedRows> rows;
    for (const Defect& defect : calibration.defects()) {
        if (doubtful || !defect.doubtful) {
            rows.push_back({defect.column, defect.first_row, defect.end_row});
        }
    }
    return rows;
}

int WriteDatabase(const Database& database, int serial, const Calibration& calibration,
                  const CalibrateOptions& options) {
    std::string text = database.text;
    const std::string problem = database_text::Merge(text, serial, RowsToList(calibration, options.doubtful),
                                                     calibration.levels().above_darkest);
    if (!problem.empty()) {
        return NotWritten(database.path, problem);
    }
    if (options.dry_run) {
        std::printf("\n%s is left as it is.\n", database.path.c_str());
        return kCalibrated;
    }
    if (const std::error_code error = database.make_folder ? database.make_folder() : std::error_code()) {
        return NotWritten(database.path, system_error::Text(error));
    }
    std::string kept;
    if (const std::string reason = database_file::Replace(database.path, database.text, text, kept);
        !reason.empty()) {
        return NotWritten(database.path, reason);
    }
    if (!kept.empty()) {
        std::printf("\nThe old database is backed up as %s.\n", kept.c_str());
    }
    std::printf("\n%s has the new values of camera %d.\n", database.path.c_str(), serial);
    std::printf("%s",
                findings_text::BlackLevel(calibration.levels(), calibration.levels().above_darkest).c_str());
    return kCalibrated;
}

int Check(const Database& database, int serial, const Calibration& calibration,
          const database_text::Values& values) {
    if (values.levels.size() < sensor_grid::kColumns) {
        std::printf("%s has no dark levels of camera %d.\n", database.path.c_str(), serial);
        return kNotCalibrated;
    }
    const CheckResult result = CheckDatabase(calibration, values);
    std::printf("%s", result.text.c_str());
    return result.good ? kCalibrated : kNotCalibrated;
}

int Run(const CalibrateOptions& options, const std::string& command,
        const DefaultDatabase& default_database) {
    Database database = {.path = options.database.empty() ? default_database.path : options.database,
                         .text = "",
                         .problem = "",
                         .make_folder = nullptr};
    if (options.database.empty()) {
        database.make_folder = default_database.make_folder;
    }
    if (database.path.empty()) {
        return Refuse("there is no data folder: name a database with --database");
    }
    if (options.check && !file_system::IsTaken(database.path)) {
        std::printf("%s: there is no such file yet; without --check it is made.\n", database.path.c_str());
        return kNotCalibrated;
    }
    Measuring measuring(options);
    if (!measuring.ReadDarks()) {
        return kNotCalibrated;
    }
    const int serial = static_cast<int>(measuring.serial());
    database.problem = database_file::Read(database.path, database.text);
    if (!database.problem.empty()) {
        return NotWritten(database.path, database.problem);
    }
    const database_text::Values values = database_text::Read(database.text, serial);
    if (!measuring.Measure(database_text::ListedIn(values.lines))) {
        return kNotCalibrated;
    }
    const Calibration& calibration = measuring.calibration();
    std::printf("Camera %d: %zu dark and %d flat exposures.\n", serial,
                calibration.darks().exposures().size(), calibration.flats());
    if (options.check) {
        return Check(database, serial, calibration, values);
    }
    std::printf("%s", findings_text::Findings(calibration).c_str());
    const int status = WriteDatabase(database, serial, calibration, options);
    if (options.report.empty()) {
        return status;
    }
    if (const std::string reason = WriteReport(options.report, command, measuring); !reason.empty()) {
        PrintNotWritten(options.report, output_names::kReport, reason.c_str());
        return kNotCalibrated;
    }
    std::printf("The report is %s.\n", (path_names::WithSeparator(options.report) + "index.html").c_str());
    return status;
}

/// The command line with shell quoting, so that it can be run again.
std::string CommandLine(std::span<const std::string> arguments) {
    constexpr const char* plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_./=:,+@%";
    std::string line = kName;
    for (const std::string& argument : arguments) {
        line += ' ';
        if (!argument.empty() && argument.find_first_not_of(plain) == std::string::npos) {
            line += argument;
            continue;
        }
        line += '\'';
        for (const char character : argument) {
            line += character == '\'' ? std::string("'\\''") : std::string(1, character);
        }
        line += '\'';
    }
    return line;
}

}  // namespace

int RunCalibrate(std::span<const std::string> arguments, const DefaultDatabase& default_database) {
    try {
        CalibrateOptions options;
        if (const std::string problem = ReadOptions(arguments, options); !problem.empty()) {
            return Refuse(problem);
        }
        if (options.help || options.version) {
            std::printf("%s %s\n%s", kName, kVersion, options.help ? kCalibrateHelp : "");
            return std::fflush(stdout) == 0 ? kCalibrated : kNotCalibrated;
        }
        return Run(options, CommandLine(arguments), default_database);
    } catch (const std::bad_alloc&) {
        std::printf("%s: out of memory\n", kName);
        return kNotCalibrated;
    }
}
