// SPDX-License-Identifier: MIT
#include "packaging/command_line_remarks.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "packaging/shell_word.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kSingleLetter = 2;  ///< length of an option of a dash and one letter

/// A word by itself. The program takes a lone dash for one, too.
bool IsWord(const Argument& argument) {
    return argument.option == nullptr && (!argument.text.starts_with('-') || argument.text == "-");
}

std::string Lowercase(std::string_view text) {
    std::string lowercase(text);
    std::ranges::transform(lowercase, lowercase.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lowercase;
}

/// An argument without its dashes, and without what comes after "=".
std::string NameIn(std::string_view argument) {
    const std::string_view name = argument.substr(0, argument.find('='));
    return Lowercase(name.substr(std::min(name.find_first_not_of('-'), name.size())));
}

/// The option that was meant by one that the program does not know: it is in long form or a capital letter.
const OptionSpelling* MeantBy(const std::string& name) {
    const auto* const found = std::ranges::find_if(kOptionSpellings, [&](const OptionSpelling& spelling) {
        return name == spelling.word || name == spelling.text.substr(1);
    });
    return found != kOptionSpellings.end() ? found : nullptr;
}

std::string RemarkOnUnknown(std::string_view text) {
    const std::string shown = ShellWord(text);
    if (text == "--help" || text == "--version" || text == "--where") {
        return shown + ": passed over: it counts only as the first word after velmarcon";
    }
    std::string remark = shown + ": passed over: there is no such option";
    const std::string name = NameIn(text);
    if (name == "h" || name == "help" || name == "?") {
        return remark + "; for help write velmarcon --help";
    }
    if (const OptionSpelling* meant = MeantBy(name); meant != nullptr) {
        remark += "; write " + std::string(meant->text);
        if (const auto sign = text.find('='); sign != std::string_view::npos) {
            remark += " " + ShellWord(text.substr(sign + 1));
        }
    }
    return remark;
}

/// `letters` as options of their own; nothing when one of them is not an option that stands without a value.
std::optional<std::string> SplitUp(std::string_view letters) {
    std::string options;
    for (const char letter : letters) {
        const auto* const found = std::ranges::find_if(kOptionSpellings, [&](const OptionSpelling& spelling) {
            return spelling.text.size() == kSingleLetter && spelling.text[1] == letter;
        });
        if (found == kOptionSpellings.end() || found->value == OptionValue::kPath) {
            return std::nullopt;
        }
        options += " " + std::string(found->text);
    }
    return options;
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// What `rest`, glued to an option that takes a value, has of one; empty when it looks like none.
std::string_view ValueIn(std::string_view rest, OptionValue value) {
    if (rest.empty() || rest.starts_with('=')) {
        return rest.substr(std::min<std::size_t>(rest.size(), 1));
    }
    const bool is_value =
        value == OptionValue::kPath ? !std::ranges::all_of(rest, IsLetter) : IsDigit(rest.front());
    return is_value ? rest : "";
}

/// What to write instead of an option with `rest` glued to it; empty when that can't be told.
std::string TakenApart(const OptionSpelling& option, std::string_view rest) {
    const std::string text(option.text);
    if (option.value != OptionValue::kNone && !ValueIn(rest, option.value).empty()) {
        return text + " " + ShellWord(ValueIn(rest, option.value));
    }
    // After -i any argument is taken for the path; after -s a letter may be meant for another of its kind.
    const bool ambiguous = option.value == OptionValue::kPath ||
                           (text.starts_with("-s") && rest.find_first_of("bdt") != std::string_view::npos);
    const auto options = ambiguous ? std::nullopt : SplitUp(rest);
    return options ? text + *options : "";
}

/// Of an option that counts, with more characters than it needs. The option's name in full is no reason for a
/// remark.
std::string RemarkOnRest(const Argument& argument) {
    const std::string_view rest = argument.text.substr(argument.option->text.size());
    if (rest.empty() || argument.text.substr(1) == argument.option->word) {
        return "";
    }
    const std::string instead = TakenApart(*argument.option, rest);
    return ShellWord(argument.text) + ": read as " + std::string(argument.option->text) +
           ", the rest is passed over" + (instead.empty() ? "" : "; write " + instead);
}

/// Of an option that needs a path, and is the last argument.
std::string RemarkOnNoPath(const Argument& argument) {
    const std::string instead =
        TakenApart(*argument.option, argument.text.substr(argument.option->text.size()));
    return ShellWord(argument.text) + ": passed over: no path comes after it" +
           (instead.empty() ? "" : "; write " + instead);
}

/// Of an option that is repeated with the value `value`.
std::string RemarkOnRepeated(const Argument& argument, std::string_view value) {
    return ShellWord(argument.text) + " " + ShellWord(value) + ": passed over: only the first " +
           std::string(argument.option->text) + " counts";
}

bool Exists(std::string_view path) {
    std::error_code error;
    return fs::exists(fs::path(path), error);
}

/// For a value that is a file or a folder, and taken for something else.
std::string HintAtInput(std::string_view value, std::span<const Argument> arguments) {
    const bool meant = FindOption(arguments, Option::kInput) == nullptr && Exists(value);
    return meant ? "; to convert it write -i " + ShellWord(value) : "";
}

/// Whether `value` is just the number that it is read as. Zeros before it do no harm.
bool IsNumber(std::string_view value, const std::string& read_as) {
    if (value.empty() || !std::ranges::all_of(value, IsDigit)) {
        return false;
    }
    return value.substr(std::min(value.find_first_not_of('0'), value.size() - 1)) == read_as;
}

std::string RemarkOnBlackLevel(const Argument& argument, std::span<const Argument> arguments) {
    const std::string_view value = argument.value.value_or("0");
    const std::string level = std::to_string(BlackLevelFrom(value));
    if (IsNumber(value, level)) {
        return "";
    }
    return "-b " + ShellWord(value) + ": read as black level " + level +
           "; it wants a whole number from 0 to 65535" + HintAtInput(value, arguments);
}

bool IsFolder(std::string_view path) {
    std::error_code error;
    return fs::is_directory(fs::path(path), error);
}

std::string RemarkOnDarkExposure(std::span<const Argument> arguments) {
    const Argument* input = FindOption(arguments, Option::kInput);
    if (FindOption(arguments, Option::kDarkFieldCreation) == nullptr ||
        (input != nullptr && !IsFolder(*input->value))) {
        return "";
    }
    return "-sd: takes one dark exposure, but the input is a folder; name the exposure, as in: velmarcon -i "
           "dark/L1000200 -sd -r";
}

/// Whether all are files of one folder, as the shell makes them of card/*.RAW.
bool AreOfOneFolder(std::span<const std::string_view> paths) {
    return std::ranges::all_of(paths, [&](std::string_view path) {
        return fs::path(path).has_extension() &&
               fs::path(path).parent_path() == fs::path(paths.front()).parent_path();
    });
}

std::string FolderOf(std::string_view path) {
    const fs::path folder = fs::path(path).parent_path();
    return folder.empty() ? "." : folder.string();
}

/// Of all words that belong to no option: a whole card may stand there.
std::string RemarkOnWords(std::span<const std::string_view> words, std::span<const Argument> arguments) {
    if (words.empty()) {
        return "";
    }
    std::string remark = ShellWord(words.front());
    if (words.size() > 1) {
        remark += " and " + std::to_string(words.size() - 1) + " more";
    }
    const Argument* input = FindOption(arguments, Option::kInput);
    if (input == nullptr) {
        const bool one_folder = words.size() > 1 && AreOfOneFolder(words);
        const std::string meant = one_folder ? FolderOf(words.front()) : std::string(words.front());
        return remark + ": passed over: without -i the input is the current folder; write -i " +
               (Exists(meant) ? ShellWord(meant) : "before what is to be converted");
    }
    remark += ": passed over: -i takes one path, here " + ShellWord(*input->value);
    std::vector<std::string_view> paths(words.begin(), words.end());
    paths.push_back(*input->value);
    if (AreOfOneFolder(paths)) {
        return remark + "; for the whole folder write -i " + ShellWord(FolderOf(paths.front()));
    }
    if (words.size() == 1 && FindOption(arguments, Option::kOutput) == nullptr && IsFolder(words.front())) {
        return remark + "; for an output folder write -o " + ShellWord(words.front());
    }
    return remark;
}

/// Goes through the arguments once, and collects the remarks.
class Remarks {
  public:
    explicit Remarks(std::span<const Argument> arguments) : arguments_(arguments) {}

    std::vector<std::string> Collect() {
        for (next_ = 0; next_ < arguments_.size();) {
            LookAt(arguments_[next_++]);
        }
        Add(RemarkOnDarkExposure(arguments_));
        Add(RemarkOnWords(words_, arguments_));
        return remarks_;
    }

  private:
    void LookAt(const Argument& argument) {
        if (IsWord(argument)) {
            words_.push_back(argument.text);
        } else if (argument.option == nullptr) {
            Add(RemarkOnUnknown(argument.text));
        } else if (argument.counts) {
            Add(RemarkOnRest(argument));
            Add(argument.option->option == Option::kBlackLevel ? RemarkOnBlackLevel(argument, arguments_)
                                                               : "");
        } else {
            LookAtPassedOver(argument);
        }
    }

    /// Repeated without a value, or with the same one, an option changes nothing, and needs no remark.
    void LookAtPassedOver(const Argument& argument) {
        const Argument* first = FindOption(arguments_, argument.option->option);
        if (first == nullptr) {
            Add(RemarkOnNoPath(argument));
        } else if (next_ < arguments_.size() && IsWord(arguments_[next_])) {
            const std::string_view value = arguments_[next_++].text;
            Add(first->value == value ? "" : RemarkOnRepeated(argument, value));
        }
    }

    void Add(std::string remark) {
        if (!remark.empty()) {
            remarks_.push_back(std::move(remark));
        }
    }

    std::span<const Argument> arguments_;
    std::size_t next_ = 0;
    std::vector<std::string> remarks_;
    std::vector<std::string_view> words_;
};

bool IsSixBits(std::string_view code) {
    constexpr std::size_t digits = 6;
    return code.size() == digits && code.find_first_not_of("01") == std::string_view::npos;
}

}  // namespace

std::vector<std::string> RemarksOn(std::span<const Argument> arguments) {
    return Remarks(arguments).Collect();
}

const Argument* LensCodeIn(std::span<const Argument> arguments) {
    const Argument* option = FindOption(arguments, Option::kLensFix);
    return option != nullptr && option->value ? option : nullptr;
}

std::string RemarkOnLensCode(const Argument& code, std::span<const Argument> arguments,
                             const lensdb& lenses) {
    const std::string text(code.value.value_or(""));
    if (lenses.Lenses.empty() || lenses.Lenses.contains(text)) {
        return "";
    }
    const std::string remark = "-l " + ShellWord(text) + ": this code adds no lens data: ";
    if (!IsSixBits(text)) {
        return remark + "it must have six digits, each 0 or 1" + HintAtInput(text, arguments);
    }
    return remark + "no lens has it in " + ShellWord(lenses.DatabaseFile);
}
