// SPDX-License-Identifier: MIT
#ifndef VELMARCON_APP_COMMAND_LINE_H
#define VELMARCON_APP_COMMAND_LINE_H

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

enum class Option : std::uint8_t {
    kInput,
    kOutput,
    kVerbose,
    kRefresh,
    kPreview,
    kBlackLevel,
    kLensFix,
    kSensorFix,
    kDarkFieldCreation,
    kPixelLineTest,
    kRowOffsetEstimation,
    kRawModelVariant,
};

/// What an option does with the argument after it.
enum class OptionValue : std::uint8_t {
    kNone,      ///< nothing
    kPath,      ///< takes it as its value, even if it looks like an option; without it, the option is ignored
    kOptional,  ///< takes it as its value unless it begins with a dash
};

struct OptionSpelling {
    Option option;
    std::string_view text;  ///< arguments that begin with this mean the option
    std::string_view word;  ///< the option's name as one word
    OptionValue value;
};

/// Only the second character distinguishes the options, and for -s the third as well. The first match counts.
constexpr std::array<OptionSpelling, 12> kOptionSpellings = {{
    {Option::kInput, "-i", "input", OptionValue::kPath},
    {Option::kOutput, "-o", "output", OptionValue::kPath},
    {Option::kVerbose, "-v", "verbose", OptionValue::kNone},
    {Option::kRefresh, "-r", "refresh", OptionValue::kNone},
    {Option::kPreview, "-p", "preview", OptionValue::kNone},
    {Option::kBlackLevel, "-b", "blacklevel", OptionValue::kOptional},
    {Option::kLensFix, "-l", "lens", OptionValue::kOptional},
    {Option::kDarkFieldCreation, "-sd", "sdark", OptionValue::kNone},
    {Option::kPixelLineTest, "-st", "stest", OptionValue::kNone},
    {Option::kRowOffsetEstimation, "-sb", "sb", OptionValue::kNone},
    {Option::kSensorFix, "-s", "sensor", OptionValue::kNone},
    {Option::kRawModelVariant, "-c", "c", OptionValue::kNone},
}};

/// An argument of the command line, together with the next one if that is its value.
struct Argument {
    std::string_view text;
    const OptionSpelling* option = nullptr;  ///< the option that it matches; null if none
    std::optional<std::string_view> value;   ///< the value that the option takes
    bool counts = false;  ///< false if it is ignored, because it matches no option, repeats an option that
                          ///< takes a value, or lacks the path that its option requires
};

/// The arguments of a command line in order. `arguments` is argv, including the program's name, and must
/// outlive the result.
std::vector<Argument> ReadCommandLine(std::span<char* const> arguments);

/// The first argument that matches `option` and counts; null if there is none.
const Argument* FindOption(std::span<const Argument> arguments, Option option);

/// The black level for `value`, the value of -b: the low 16 bits of the number at its start; 0 if it does not
/// start with a number.
std::uint16_t BlackLevelFrom(std::string_view value);

#endif  // VELMARCON_APP_COMMAND_LINE_H
