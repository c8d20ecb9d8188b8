// SPDX-License-Identifier: MIT
#include "app/options.h"

#include <string_view>

#include "app/command_line.h"
#include "app/input_discovery.h"
#include "base/error_codes.h"
#include "system/path_names.h"

namespace {

void SetSensorFix(RunSettings& settings) {
    settings.sensor_fix = true;
    settings.dark_field_fix = true;
}

/// Applies an option that counts, unless it names input or output.
void Set(const Argument& argument, RunSettings& settings) {
    switch (argument.option->option) {
        case Option::kInput:
        case Option::kOutput:
            break;
        case Option::kVerbose:
            settings.verbose = true;
            break;
        case Option::kRefresh:
            settings.refresh = true;
            break;
        case Option::kPreview:
            settings.preview = true;
            break;
        case Option::kBlackLevel:
            settings.black_level_given = true;
            if (argument.value) {
                settings.black_level = BlackLevelFrom(*argument.value);
            }
            break;
        case Option::kLensFix:
            settings.lens_fix = true;
            settings.lens_code = argument.value.value_or("");
            break;
        case Option::kSensorFix:
            SetSensorFix(settings);
            break;
        case Option::kDarkFieldCreation:
            SetSensorFix(settings);
            settings.dark_field_creation = true;
            break;
        case Option::kPixelLineTest:
            SetSensorFix(settings);
            settings.pixel_line_test = true;
            break;
        case Option::kRowOffsetEstimation:
            SetSensorFix(settings);
            settings.row_offset_estimation = true;
            break;
        case Option::kRawModelVariant:
            settings.raw_model_variant = true;
            break;
    }
}

/// Turns the arguments of a command line into settings, one by one.
class OptionReader {
  public:
    OptionReader(const ErrorHandler& errors, RunSettings& settings) : errors_(errors), settings_(settings) {}

    /// Returns 0, or the code of an error that ends the run; the arguments after the error are not read.
    int Read(std::span<const Argument> arguments) {
        for (const Argument& argument : arguments) {
            if (const int error = argument.counts ? Apply(argument) : 0; error != 0) {
                return error;
            }
        }
        return 0;
    }

    bool InputGiven() const { return input_given_; }
    bool OutputGiven() const { return output_given_; }

  private:
    int Apply(const Argument& argument) {
        const std::string value(argument.value.value_or(""));
        if (argument.option->option == Option::kInput) {
            return SetInput(value);
        }
        if (argument.option->option == Option::kOutput) {
            return SetOutput(value);
        }
        Set(argument, settings_);
        return 0;
    }

    /// Resolves the path immediately, so that a wrong one ends the run before later options are read.
    int SetInput(const std::string& path) {
        input_given_ = true;
        const InputError error = ResolveInput(path, settings_.input);
        if (error.code == 0) {
            return 0;
        }
        return error.name.empty() ? errors_.PrintError(error.code)
                                  : errors_.PrintError(error.code, error.name);
    }

    int SetOutput(const std::string& path) {
        output_given_ = true;
        settings_.output_folder = path_names::WithSeparator(path);
        return isdir(settings_.output_folder.c_str()) ? 0 : errors_.PrintError(kBadOutputFolder);
    }

    const ErrorHandler& errors_;
    RunSettings& settings_;
    bool input_given_ = false;
    bool output_given_ = false;
};

}  // namespace

std::string ExecutableFolder(const std::string& program) {
    const std::string folder = path_names::FolderPart(program);
    return folder.size() == 1 ? "./" : folder;
}

RunSettings SettingsOf(std::span<const Argument> arguments) {
    RunSettings settings;
    for (const Argument& argument : arguments) {
        if (argument.counts) {
            Set(argument, settings);
        }
    }
    return settings;
}

int ParseOptions(std::span<char* const> arguments, const lensdb& lenses, const ErrorHandler& errors,
                 RunSettings& settings) {
    OptionReader reader(errors, settings);
    if (const int error = reader.Read(ReadCommandLine(arguments)); error != 0) {
        return error;
    }
    if (!reader.InputGiven()) {
        settings.input = CurrentFolder();
    }
    if (!reader.OutputGiven()) {
        settings.output_folder = settings.input.folder;
    }
    if (settings.lens_fix && lenses.Lenses.empty()) {
        return errors.PrintError(kNoLensDatabase);
    }
    return settings.input.names.empty() ? errors.PrintError(kUsage) : 0;
}
