// SPDX-License-Identifier: MIT
#include "app/command_line.h"

#include <algorithm>
#include <cstdlib>
#include <string>

namespace {

bool BeginsWithDash(std::string_view argument) {
    return argument.starts_with('-');
}

const OptionSpelling* FindSpelling(std::string_view argument) {
    const auto* const found = std::ranges::find_if(kOptionSpellings, [&](const OptionSpelling& spelling) {
        return argument.starts_with(spelling.text);
    });
    return found != kOptionSpellings.end() ? found : nullptr;
}

/// Walks the arguments once, from left to right; an option takes its value from the walk.
class CommandLineWalk {
  public:
    explicit CommandLineWalk(std::span<char* const> arguments) : arguments_(arguments) {}

    std::vector<Argument> Run() {
        constexpr std::size_t program_name = 1;
        for (next_ = program_name; next_ < arguments_.size();) {
            Argument argument = {.text = arguments_[next_++], .option = nullptr, .value = {}};
            argument.option = FindSpelling(argument.text);
            if (argument.option != nullptr) {
                Take(argument);
            }
            read_.push_back(argument);
        }
        return read_;
    }

  private:
    void Take(Argument& argument) {
        const OptionValue value = argument.option->value;
        if (value == OptionValue::kNone) {
            argument.counts = true;
        } else if (bool& given = given_.at(static_cast<std::size_t>(argument.option->option)); !given) {
            argument.value = NextValue(value);
            argument.counts = argument.value || value == OptionValue::kOptional;
            given = argument.counts;
            if (argument.value) {
                ++next_;
            }
        }
    }

    std::optional<std::string_view> NextValue(OptionValue value) const {
        if (next_ >= arguments_.size()) {
            return std::nullopt;
        }
        const std::string_view argument = arguments_[next_];
        return value == OptionValue::kPath || !BeginsWithDash(argument) ? std::optional(argument)
                                                                        : std::nullopt;
    }

    std::span<char* const> arguments_;
    std::vector<Argument> read_;
    std::array<bool, kOptionSpellings.size()> given_ = {};  ///< indexed by Option
    std::size_t next_ = 0;
};

}  // namespace

std::vector<Argument> ReadCommandLine(std::span<char* const> arguments) {
    return CommandLineWalk(arguments).Run();
}

const Argument* FindOption(std::span<const Argument> arguments, Option option) {
    const auto found = std::ranges::find_if(arguments, [&](const Argument& argument) {
        return argument.counts && argument.option->option == option;
    });
    return found != arguments.end() ? &*found : nullptr;
}

std::uint16_t BlackLevelFrom(std::string_view value) {
    constexpr int decimal = 10;
    return static_cast<std::uint16_t>(std::strtoll(std::string(value).c_str(), nullptr, decimal));
}
