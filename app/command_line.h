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
    kPath,      ///< takes it, whatever it looks like; passed over when there is none
    kOptional,  ///< takes it unless it begins with a dash
};

struct OptionSpelling {
    Option option;
    std::string_view text;  ///< what an argument that means this option begins with
    std::string_view word;  ///< the option's name in one word
    OptionValue value;
};

/// Only the second character tells the option; of -s the third one, too. The first that fits is meant.
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

/// An argument of the command line, with the one after it if that is its value.
struct Argument {
    std::string_view text;
    const OptionSpelling* option = nullptr;  ///< the option that it means; null when it means none
    std::optional<std::string_view> value;   ///< what the option takes
    bool counts = false;  ///< false when it is passed over: it means no option, or of a repeated option with
                          ///< a value it is not the first, or it is an option without the path that it needs
};

/// The arguments of a command line in their order. `arguments` is argv, the program's name included, and
/// outlives what is returned.
std::vector<Argument> ReadCommandLine(std::span<char* const> arguments);

/// The first argument that means `option` and counts; null when there is none.
const Argument* FindOption(std::span<const Argument> arguments, Option option);

/// The black level that `value`, of -b, stands for: the low 16 bits of the number that it begins with; 0 when
/// it begins with none.
std::uint16_t BlackLevelFrom(std::string_view value);

#endif  // VELMARCON_APP_COMMAND_LINE_H
