// SPDX-License-Identifier: MIT
#include "batch/conversion_options.h"

#include <algorithm>
#include <cstdint>
#include <tuple>

#include "app/command_line.h"
#include "app/options.h"
#include "packaging/command_line_remarks.h"
#include "packaging/shell_word.h"

namespace conversion_options {

namespace {

/// The options as arguments of a command line, which begins with the program's name. Lives as long as what
/// was read of it.
class CommandLine {
  public:
    explicit CommandLine(std::span<const std::string> options) : texts_(options.begin(), options.end()) {
        texts_.insert(texts_.begin(), "velmarcon");
        for (std::string& text : texts_) {
            pointers_.push_back(text.data());
        }
        arguments_ = ReadCommandLine(pointers_);
    }

    std::span<const Argument> arguments() const { return arguments_; }

  private:
    std::vector<std::string> texts_;
    std::vector<char*> pointers_;
    std::vector<Argument> arguments_;
};

bool IsWord(const Argument& argument) {
    return argument.option == nullptr && !argument.text.starts_with('-');
}

std::string RefusalOf(const Argument& argument) {
    const std::string text(argument.text);
    if (IsWord(argument)) {
        return "'" + text + "' after -- is no option, nor the value of one";
    }
    if (argument.option == nullptr) {
        return "";
    }
    const Option option = argument.option->option;
    if (option == Option::kInput || option == Option::kOutput) {
        return text + " after --: the input and the output of each velmarcon are given to it from here";
    }
    if (option == Option::kDarkFieldCreation) {
        return "-sd makes the database of one camera from one dark exposure; many at once would overwrite "
               "each other's. "
               "Run velmarcon itself with it, once, then this with -s";
    }
    return "";
}

/// Of what RemarksOn says, that which does not concern the input: each picture is given to the program.
bool ConcernsOptions(const std::string& remark) {
    return remark.find(": ignored") != std::string::npos || remark.find(": read as ") != std::string::npos;
}

}  // namespace

std::string Refusal(std::span<const std::string> options) {
    const CommandLine line(options);
    for (const Argument& argument : line.arguments()) {
        if (std::string refusal = RefusalOf(argument); !refusal.empty()) {
            return refusal;
        }
    }
    return "";
}

std::vector<std::string> Remarks(std::span<const std::string> options, const lensdb& lenses) {
    std::vector<std::string> remarks;
    const CommandLine line(options);
    for (const std::string& remark : RemarksOn(line.arguments())) {
        if (ConcernsOptions(remark)) {
            remarks.push_back(remark);
        }
    }
    if (const Argument* const code = LensCodeIn(line.arguments()); code != nullptr) {
        if (std::string remark = RemarkOnLensCode(*code, line.arguments(), lenses); !remark.empty()) {
            remarks.push_back(remark);
        }
    }
    return remarks;
}

RunSettings Settings(std::span<const std::string> options) {
    return SettingsOf(CommandLine(options).arguments());
}

bool NeedDatabases(const RunSettings& settings) {
    return settings.lens_fix || settings.sensor_fix;
}

bool MakeSameDng(std::span<const std::string> options, std::span<const std::string> others) {
    const auto looks = [](const RunSettings& settings) {
        return std::tuple(settings.preview, settings.black_level_given,
                          settings.black_level_given ? settings.black_level : std::uint16_t{0},
                          settings.lens_fix, settings.lens_code, settings.sensor_fix, settings.dark_field_fix,
                          settings.pixel_line_test, settings.row_offset_estimation,
                          settings.raw_model_variant);
    };
    return std::ranges::equal(options, others) || looks(Settings(options)) == looks(Settings(others));
}

std::vector<std::string> ThatChangeTheDng(std::span<const std::string> options) {
    std::vector<std::string> changing;
    const CommandLine line(options);
    for (const Argument& argument : line.arguments()) {
        const bool is_known = argument.option != nullptr;
        if (is_known && argument.option->option != Option::kRefresh &&
            argument.option->option != Option::kVerbose) {
            changing.emplace_back(argument.text);
            if (argument.value) {
                changing.emplace_back(*argument.value);
            }
        }
    }
    return changing;
}

std::string Line(std::span<const std::string> options) {
    std::string line;
    for (const std::string& option : options) {
        line += (line.empty() ? "" : " ") + ShellWord(option);
    }
    return line.empty() ? "no options" : line;
}

}  // namespace conversion_options
