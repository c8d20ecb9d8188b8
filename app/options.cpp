// SPDX-License-Identifier: MIT
#include "app/options.h"

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "app/error_codes.h"
#include "app/input_discovery.h"

namespace {

bool IsOption(std::string_view argument) {
    return argument.starts_with('-');
}

/// Walks the arguments once, from left to right; each option takes its value from the walk.
class OptionWalk {
  public:
    OptionWalk(std::span<char* const> arguments, const ErrorHandler& errors, RunSettings& settings)
        : arguments_(arguments), errors_(errors), settings_(settings) {}

    /// Returns 0 or the code of an error that ended the walk.
    int Run() {
        constexpr std::size_t program_name = 1;
        for (next_ = program_name; next_ < arguments_.size();) {
            const std::string_view argument = arguments_[next_++];
            if (!IsOption(argument) || argument.size() < 2) {
                continue;
            }
            if (const int error = Apply(argument); error != 0) {
                return error;
            }
        }
        return 0;
    }

    bool InputGiven() const { return input_given_; }
    bool OutputGiven() const { return output_given_; }

  private:
    /// Only the second character tells the option; of -s the third one, too.
    int Apply(std::string_view argument) {
        switch (argument[1]) {
            case 'b':
                SetBlackLevel();
                return 0;
            case 'c':
                settings_.raw_model_variant = true;
                return 0;
            case 'i':
                return SetInput();
            case 'l':
                SetLensFix();
                return 0;
            case 'o':
                return SetOutput();
            case 'p':
                settings_.preview = true;
                return 0;
            case 'r':
                settings_.refresh = true;
                return 0;
            case 's':
                SetSensorFix(argument.substr(2));
                return 0;
            case 'v':
                settings_.verbose = true;
                return 0;
            default:
                return 0;
        }
    }

    /// The next argument, whatever it looks like.
    std::optional<std::string> NextArgument() const {
        return next_ < arguments_.size() ? std::optional<std::string>(arguments_[next_]) : std::nullopt;
    }

    /// The next argument, unless it is an option.
    std::optional<std::string> NextValue() const {
        const auto argument = NextArgument();
        return argument && !IsOption(*argument) ? argument : std::nullopt;
    }

    /// The value is left in the walk, which passes over it.
    void SetBlackLevel() {
        if (settings_.black_level_given) {
            return;
        }
        settings_.black_level_given = true;
        if (const auto value = NextValue()) {
            // Only the low 16 bits are kept; what is no number is 0.
            constexpr int decimal = 10;
            settings_.black_level =
                static_cast<std::uint16_t>(std::strtoll(value->c_str(), nullptr, decimal));
        }
    }

    /// The path is resolved at once, so that a wrong one ends the run before later options are read.
    int SetInput() {
        const auto path = NextArgument();
        if (!path || input_given_) {
            return 0;
        }
        input_given_ = true;
        ++next_;
        const InputError error = ResolveInput(*path, settings_.input);
        if (error.code == 0) {
            return 0;
        }
        return error.name.empty() ? errors_.PrintError(error.code)
                                  : errors_.PrintError(error.code, error.name);
    }

    void SetLensFix() {
        if (settings_.lens_fix) {
            return;
        }
        settings_.lens_fix = true;
        if (const auto value = NextValue()) {
            settings_.lens_code = *value;
            ++next_;
        }
    }

    int SetOutput() {
        const auto path = NextArgument();
        if (!path || output_given_) {
            return 0;
        }
        output_given_ = true;
        ++next_;
        settings_.output_folder = WithSeparator(*path);
        return isdir(settings_.output_folder.c_str()) ? 0 : errors_.PrintError(kBadOutputFolder);
    }

    void SetSensorFix(std::string_view letters) {
        settings_.sensor_fix = true;
        settings_.dark_field_fix = true;
        settings_.dark_field_creation |= letters.starts_with('d');
        settings_.pixel_line_test |= letters.starts_with('t');
        settings_.row_offset_estimation |= letters.starts_with('b');
    }

    std::span<char* const> arguments_;
    const ErrorHandler& errors_;
    RunSettings& settings_;
    std::size_t next_ = 0;
    bool input_given_ = false;
    bool output_given_ = false;
};

}  // namespace

std::string ExecutableFolder(const std::string& program) {
    const auto separator = program.find_last_of(kSeparators);
    if (separator == std::string::npos) {
        return "";
    }
    return separator == 0 ? "./" : program.substr(0, separator + 1);
}

int ParseOptions(std::span<char* const> arguments, const lensdb& lenses, const ErrorHandler& errors,
                 RunSettings& settings) {
    OptionWalk walk(arguments, errors, settings);
    if (const int error = walk.Run(); error != 0) {
        return error;
    }
    if (!walk.InputGiven()) {
        settings.input = CurrentFolder();
    }
    if (!walk.OutputGiven()) {
        settings.output_folder = settings.input.folder;
    }
    if (settings.lens_fix && lenses.Lenses.empty()) {
        return errors.PrintError(kNoLensDatabase);
    }
    return settings.input.names.empty() ? errors.PrintError(kUsage) : 0;
}
