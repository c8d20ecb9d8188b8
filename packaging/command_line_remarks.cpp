// SPDX-License-Identifier: MIT
#include "packaging/command_line_remarks.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "packaging/batch_option_names.h"
#include "packaging/path_remarks.h"
#include "packaging/shell_word.h"
#include "system/path_names.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kSingleLetter = 2;  ///< length of a dash and one letter

/// Whether the argument is a bare word. A lone dash counts as one for the program.
bool IsWord(const Argument& argument) {
    return argument.option == nullptr && (!argument.text.starts_with('-') || argument.text == "-");
}

/// What a word begins with whose hyphen a word processor or a web page has made a long dash: en dash, em
/// dash, minus sign and the two hyphens of Unicode.
constexpr std::array<std::string_view, 5> kLongDashes = {"\u2013", "\u2014", "\u2212", "\u2010", "\u2011"};

/// `word` with a plain hyphen instead of the dash at its start; nothing if it does not start with such a
/// dash.
std::optional<std::string> WithPlainHyphen(std::string_view word) {
    const auto* const dash =
        std::ranges::find_if(kLongDashes, [&](std::string_view text) { return word.starts_with(text); });
    return dash != kLongDashes.end() ? std::optional("-" + std::string(word.substr(dash->size())))
                                     : std::nullopt;
}

std::string Lowercase(std::string_view text) {
    std::string lowercase(text);
    std::ranges::transform(lowercase, lowercase.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lowercase;
}

/// The argument in lower case, without its dashes and without what comes after "=".
std::string NameIn(std::string_view argument) {
    const std::string_view name = argument.substr(0, argument.find('='));
    return Lowercase(name.substr(std::min(name.find_first_not_of('-'), name.size())));
}

/// The option that an unknown argument means: it is the option's long form or its letter in upper case.
const OptionSpelling* MeantBy(const std::string& name) {
    const auto* const found = std::ranges::find_if(kOptionSpellings, [&](const OptionSpelling& spelling) {
        return name == spelling.word || name == spelling.text.substr(1);
    });
    return found != kOptionSpellings.end() ? found : nullptr;
}

bool IsOfBatch(std::string_view argument) {
    return std::ranges::find(kBatchOptionNames, argument.substr(0, argument.find('='))) !=
           kBatchOptionNames.end();
}

std::string RemarkOnUnknown(std::string_view text) {
    const std::string shown = ShellWord(text);
    if (text == "--help" || text == "--version" || text == "--where") {
        return shown + ": ignored: it counts only as the first word after velmarcon";
    }
    std::string remark = shown + ": ignored: there is no such option";
    const std::string name = NameIn(text);
    if (name == "h" || name == "help" || name == "?") {
        return remark + "; for help write velmarcon --help";
    }
    if (IsOfBatch(text)) {
        return remark + "; velmarcon-batch has it";
    }
    if (const OptionSpelling* meant = MeantBy(name); meant != nullptr) {
        remark += "; write " + std::string(meant->text);
        if (const auto sign = text.find('='); sign != std::string_view::npos) {
            remark += " " + ShellWord(text.substr(sign + 1));
        }
    }
    return remark;
}

/// `letters` as separate options; nothing if one of them is not an option without a required value.
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

bool Exists(std::string_view path) {
    std::error_code error;
    return fs::exists(fs::path(path), error);
}

/// The value in `rest`, the text attached to an option that takes a value; empty if it does not look like
/// one.
std::string_view ValueIn(std::string_view rest, OptionValue value) {
    if (rest.empty() || rest.starts_with('=')) {
        return rest.substr(std::min<std::size_t>(rest.size(), 1));
    }
    const bool is_value = value == OptionValue::kPath ? !std::ranges::all_of(rest, IsLetter) || Exists(rest)
                                                      : IsDigit(rest.front());
    return is_value ? rest : "";
}

/// What to write instead of an option with `rest` attached; empty if that can't be told.
std::string TakenApart(const OptionSpelling& option, std::string_view rest) {
    const std::string text(option.text);
    if (option.value != OptionValue::kNone && !ValueIn(rest, option.value).empty()) {
        return text + " " + ShellWord(ValueIn(rest, option.value));
    }
    // Any argument after -i counts as its path. A letter after -s may mean another of the -s options, but not
    // after a hyphen.
    const bool has_hyphen = rest.starts_with('-');
    const bool ambiguous =
        option.value == OptionValue::kPath ||
        (text.starts_with("-s") && !has_hyphen && rest.find_first_of("bdt") != std::string_view::npos);
    const auto options = ambiguous ? std::nullopt : SplitUp(rest.substr(has_hyphen ? 1 : 0));
    return options ? text + *options : "";
}

/// The remark on an option that counts but has more characters than it needs. The option's full name needs no
/// remark.
std::string RemarkOnRest(const Argument& argument) {
    if (!HasMoreThanOption(argument)) {
        return "";
    }
    const std::string_view rest = argument.text.substr(argument.option->text.size());
    const std::string instead = TakenApart(*argument.option, rest);
    return ShellWord(argument.text) + ": read as " + std::string(argument.option->text) +
           ", the rest is ignored" + (instead.empty() ? "" : "; write " + instead);
}

/// The remark on an option that needs a path but is the last argument.
std::string RemarkOnNoPath(const Argument& argument) {
    const std::string instead =
        TakenApart(*argument.option, argument.text.substr(argument.option->text.size()));
    const std::string remark = ShellWord(argument.text) + ": ignored: no path comes after it";
    if (!instead.empty()) {
        return remark + "; write " + instead;
    }
    return argument.option->option == Option::kOutput ? remark + "; the DNGs go next to the input" : remark;
}

/// The remark on an option that is repeated with the value `value`.
std::string RemarkOnRepeated(const Argument& argument, std::string_view value) {
    return ShellWord(argument.text) + " " + ShellWord(value) + ": ignored: only the first " +
           std::string(argument.option->text) + " counts";
}

bool IsFolder(std::string_view path) {
    std::error_code error;
    return fs::is_directory(fs::path(path), error);
}

/// A hint for a value that is a file or a folder but was read as something else.
std::string HintAtPath(std::string_view value, std::span<const Argument> arguments) {
    if (FindOption(arguments, Option::kInput) == nullptr) {
        return Exists(value) ? "; to convert it write -i " + ShellWord(value) : "";
    }
    const bool is_output = FindOption(arguments, Option::kOutput) == nullptr && IsFolder(value);
    return is_output ? "; for an output folder write -o " + ShellWord(value) : "";
}

/// A hint for a value of -b that is not a number.
std::string HintAtLevel(std::string_view value, std::span<const Argument> arguments) {
    if (path_names::Extension(Lowercase(value)) == "bia") {
        return "; write -b alone: a dark frame is found by its name";
    }
    return HintAtPath(value, arguments);
}

/// Whether `value` is exactly the number that it is read as, apart from leading zeros.
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
           "; it must be a whole number from 0 to 65535" + HintAtLevel(value, arguments);
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

/// Whether all paths are files in one folder, as after the shell expands card/*.RAW.
bool AreOfOneFolder(std::span<const std::string_view> paths) {
    return std::ranges::all_of(paths, [&](std::string_view path) {
        return fs::path(path).has_extension() &&
               fs::path(path).parent_path() == fs::path(paths.front()).parent_path();
    });
}

/// Whether the program would find something to convert at `path`, where the extension may be left out.
bool IsInput(const std::string& path) {
    return Exists(path) || Exists(path_names::WithExtension(path, path_names::kRawExtension)) ||
           Exists(path_names::WithExtension(path, path_names::kDngExtension));
}

std::string FolderOf(std::string_view path) {
    const fs::path folder = fs::path(path).parent_path();
    return folder.empty() ? "." : folder.string();
}

/// One remark on all words that belong to no option, because they may be all the files of a card. `quoted` is
/// the text that the first word may be a part of.
std::string RemarkOnWords(std::span<const std::string_view> words, std::span<const Argument> arguments,
                          const std::string& quoted) {
    if (words.empty()) {
        return "";
    }
    std::string remark = ShellWords(words.front(), words.size());
    const Argument* input = FindOption(arguments, Option::kInput);
    if (input == nullptr) {
        const bool one_folder = words.size() > 1 && AreOfOneFolder(words);
        const std::string meant = one_folder ? FolderOf(words.front()) : std::string(words.front());
        return remark + ": ignored: without -i the input is the current folder; write -i " +
               (IsInput(meant) ? ShellWord(meant) : "before the input");
    }
    remark += ": ignored: -i takes one path, here " + ShellWord(*input->value);
    std::vector<std::string_view> paths(words.begin(), words.end());
    paths.push_back(*input->value);
    if (AreOfOneFolder(paths)) {
        return remark + "; for the whole folder write -i " + ShellWord(FolderOf(paths.front()));
    }
    if (words.size() == 1 && FindOption(arguments, Option::kOutput) == nullptr && IsFolder(words.front())) {
        return remark + "; for an output folder write -o " + ShellWord(words.front());
    }
    return quoted.empty() ? remark : remark + "; a name with a blank needs quotes: " + quoted;
}

constexpr const char* kNegativeLevel = "; the black level is then 92, and cannot be negative";

/// Whether `argument` is a negative number meant for -b, when `before` is -b.
bool IsNegativeLevel(const Argument& argument, const Argument* before) {
    return before != nullptr && before->counts && before->option->option == Option::kBlackLevel &&
           !before->value && argument.text.size() > 1 && IsDigit(argument.text[1]);
}

/// Whether `word` is a second number after the value of -b, when `before` is -b.
bool IsSecondLevel(std::string_view word, const Argument* before) {
    return before != nullptr && before->counts && before->option->option == Option::kBlackLevel &&
           before->value && !word.empty() && std::ranges::all_of(word, IsDigit) &&
           !IsInput(std::string(word));
}

/// Goes through the arguments once and collects the remarks.
class Remarks {
  public:
    explicit Remarks(std::span<const Argument> arguments) : arguments_(arguments) {}

    std::vector<std::string> Collect() {
        for (next_ = 0; next_ < arguments_.size();) {
            const Argument* const before = next_ > 0 ? &arguments_[next_ - 1] : nullptr;
            LookAt(arguments_[next_++], before);
        }
        Add(RemarkOnDarkExposure(arguments_));
        if (!words_are_explained_) {
            Add(RemarkOnWords(words_, arguments_,
                              with_blanks_.empty() ? "" : quoted_option_ + " " + ShellWord(with_blanks_)));
        }
        std::ranges::move(RemarksOnPaths(arguments_), std::back_inserter(remarks_));
        return remarks_;
    }

  private:
    void LookAt(const Argument& argument, const Argument* before) {
        if (IsWord(argument)) {
            LookAtWord(argument.text, before);
        } else if (argument.option == nullptr) {
            Add(RemarkOnUnknown(argument.text) + (IsNegativeLevel(argument, before) ? kNegativeLevel : ""));
        } else if (argument.counts) {
            Add(RemarkOnRest(argument));
            // The intended path is attached to the option, so the option has taken the next argument, and
            // that argument's value becomes a stray word.
            words_are_explained_ |=
                argument.option->value == OptionValue::kPath && HasMoreThanOption(argument);
            Add(argument.option->option == Option::kBlackLevel ? RemarkOnBlackLevel(argument, arguments_)
                                                               : "");
        } else {
            LookAtPassedOver(argument);
        }
    }

    void LookAtWord(std::string_view word, const Argument* before) {
        if (const auto meant = WithPlainHyphen(word); meant) {
            Add(ShellWord(word) + ": ignored: it begins with a long dash; write " + ShellWord(*meant) +
                " with a plain hyphen");
            words_are_explained_ = true;  // the word after it is its value
        } else if (IsSecondLevel(word, before)) {
            Add(ShellWord(word) + ": ignored: -b takes one value, here " + ShellWord(*before->value));
        } else {
            LookForBlank(word, before);
            words_.push_back(word);
        }
    }

    /// Whether `word` may belong to the path before it: a name with blanks that lacks quotes. Goes on from
    /// word to word until there is such a file or folder.
    void LookForBlank(std::string_view word, const Argument* before) {
        if (before == nullptr) {
            return;
        }
        if (words_.empty() && before->counts && before->value &&
            before->option->value == OptionValue::kPath && !Exists(*before->value)) {
            with_blanks_ = std::string(*before->value) + " " + std::string(word);
            quoted_option_ = std::string(before->option->text);
        } else if (!with_blanks_.empty() && IsWord(*before) && !Exists(with_blanks_)) {
            with_blanks_ += " " + std::string(word);
        }
    }

    /// An option repeated without a value, or with the same value, changes nothing and needs no remark.
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
    std::string quoted_option_;         ///< the option whose path lacks quotes
    std::string with_blanks_;           ///< that path, with the words that may belong to it
    bool words_are_explained_ = false;  ///< whether another remark explains the stray words
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
        return remark + "it must have six digits, each 0 or 1" + HintAtPath(text, arguments);
    }
    return remark + "no lens has it in " + ShellWord(lenses.DatabaseFile);
}
