// SPDX-License-Identifier: MIT
#include "batch/batch_options.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

const char* const kBatchHelp =
    "Usage: velmarcon-batch [OPTION...] FOLDER... [-- VELMARCON-OPTION...]\n"
    "\n"
    "Converts every Leica M8 picture in the folders and the folders below them:\n"
    "pairs of X.RAW and X.JPG, and the DNGs that the camera itself wrote. Single\n"
    "pictures may be named, too, by any of their files. A second call resumes where\n"
    "an interrupted one stopped.\n"
    "\n"
    "  -o, --output DIR      write the DNGs there, in folders like those of the\n"
    "                        pictures; without it: next to the RAW files\n"
    "  -j, --jobs N          run N at a time; without it: one on each core\n"
    "      --hosts LIST      have other machines do the work, over ssh:\n"
    "                        [N/][USER@]HOST,... (this one is called :)\n"
    "      --from0 FILE      only these pictures of the folders: a list of paths,\n"
    "                        each ended by a NUL, as find -print0 makes it; - is\n"
    "                        standard input\n"
    "      --newest-first    begin with the newest pictures\n"
    "      --fresh           with -r: convert all pictures, also those that an\n"
    "                        interrupted run has refreshed\n"
    "      --rename          if the DNG of another picture has the name, add -2 to\n"
    "                        it; not with --hosts, because another machine cannot\n"
    "                        see which names are free here\n"
    "      --keep-time       give each DNG the time of its RAW file\n"
    "      --accept-damaged  count a damaged picture as a success if there is a DNG\n"
    "                        of it, and what was ignored as a remark\n"
    "      --anyway          begin even if the disk has not enough room\n"
    "      --no-verify       do not compare DNGs with their RAW files, neither new\n"
    "                        ones nor those that others made\n"
    "      --verify          convert nothing: prove that every picture has its DNG\n"
    "      --checksums       write a file SHA256SUMS next to the DNGs\n"
    "  -n, --dry-run         list what would be done, and do nothing\n"
    "  -q, --quiet           print failures and what was ignored only\n"
    "      --json FILE       write a line of JSON for each picture to this file\n"
    "      --notify          show a message on the desktop when the run has ended\n"
    "      --state DIR       keep the report, and what a run needs to resume, there\n"
    "  -h, --help            this text\n"
    "      --version         the version\n"
    "\n"
    "Options of velmarcon come after --: -r, -p, -b, -l, -s and so on, but not -i,\n"
    "-o or -sd.\n"
    "\n"
    "Status: 0 if every picture has a complete DNG, 1 if some have none, 2 for wrong\n"
    "usage, 3 if the work could not begin, 130 after Ctrl-C.\n";

namespace {

/// An option without a value.
struct Flag {
    std::string_view name;
    bool BatchOptions::*member;
};

constexpr std::array<Flag, 17> kFlags = {{
    {"--fresh", &BatchOptions::fresh},
    {"-n", &BatchOptions::dry_run},
    {"--dry-run", &BatchOptions::dry_run},
    {"-q", &BatchOptions::quiet},
    {"--quiet", &BatchOptions::quiet},
    {"--verify", &BatchOptions::verify},
    {"--no-verify", &BatchOptions::no_verify},
    {"--checksums", &BatchOptions::checksums},
    {"--rename", &BatchOptions::rename},
    {"--accept-damaged", &BatchOptions::accept_damaged},
    {"--anyway", &BatchOptions::anyway},
    {"--notify", &BatchOptions::notify},
    {"--keep-time", &BatchOptions::keep_time},
    {"--newest-first", &BatchOptions::newest_first},
    {"-h", &BatchOptions::help},
    {"--help", &BatchOptions::help},
    {"--version", &BatchOptions::version},
}};

/// An option with a text; -j has a number.
struct Text {
    std::string_view name;
    std::string BatchOptions::*member;
};

constexpr std::array<Text, 6> kTexts = {{
    {"-o", &BatchOptions::output},
    {"--output", &BatchOptions::output},
    {"--hosts", &BatchOptions::hosts},
    {"--from0", &BatchOptions::list},
    {"--json", &BatchOptions::json},
    {"--state", &BatchOptions::state},
}};

bool IsJobs(std::string_view name) {
    return name == "-j" || name == "--jobs";
}

const Text* FindText(std::string_view name) {
    const auto* const found = std::ranges::find(kTexts, name, &Text::name);
    return found != kTexts.end() ? found : nullptr;
}

/// From 1 to 9999.
std::optional<unsigned int> NumberOfJobs(const std::string& value) {
    constexpr std::size_t most_digits = 4;
    const bool is_number = !value.empty() && value.size() <= most_digits && value.front() != '0' &&
                           std::ranges::all_of(value, [](char c) { return c >= '0' && c <= '9'; });
    return is_number ? std::optional(static_cast<unsigned int>(std::stoul(value))) : std::nullopt;
}

/// An argument taken apart: --name=value, -ovalue, or a name by itself.
struct Word {
    std::string name;
    std::optional<std::string> value;
};

Word TakeApart(const std::string& argument) {
    constexpr std::size_t letter = 2;
    if (argument.starts_with("--")) {
        const auto sign = argument.find('=');
        const std::string name = argument.substr(0, sign);
        if (sign != std::string::npos && (IsJobs(name) || FindText(name) != nullptr)) {
            return {name, argument.substr(sign + 1)};
        }
    } else if (argument.size() > letter && (argument.starts_with("-o") || argument.starts_with("-j"))) {
        return {argument.substr(0, letter), argument.substr(letter)};
    }
    return {argument, std::nullopt};
}

/// Reads the arguments one by one.
class Reader {
  public:
    Reader(std::span<const std::string> arguments, BatchOptions& options)
        : arguments_(arguments), options_(options) {}

    std::string Read() {
        while (next_ < arguments_.size()) {
            if (arguments_[next_] == "--") {
                const auto rest = arguments_.subspan(next_ + 1);
                options_.conversion.assign(rest.begin(), rest.end());
                break;
            }
            if (std::string problem = ReadOne(arguments_[next_++]); !problem.empty()) {
                return problem;
            }
            if (options_.help || options_.version) {
                return "";
            }
        }
        return CheckTogether();
    }

  private:
    std::string ReadOne(const std::string& argument) {
        const Word word = TakeApart(argument);
        const auto* const flag = std::ranges::find(kFlags, word.name, &Flag::name);
        if (flag != kFlags.end()) {
            options_.*flag->member = true;
            return "";
        }
        if (const Text* text = FindText(word.name); text != nullptr || IsJobs(word.name)) {
            return ReadValue(word, text);
        }
        if (argument.starts_with("--delete")) {
            return "there is no " + argument +
                   ": originals are deleted by hand, and only after velmarcon-batch has ended with status 0. "
                   "A picture cannot be taken again";
        }
        if (argument.size() > 1 && argument.starts_with('-')) {
            return "unknown option " + argument + "; options of velmarcon come after --";
        }
        options_.folders.push_back(argument);
        return "";
    }

    std::string ReadValue(const Word& word, const Text* text) {
        if (!word.value && next_ == arguments_.size()) {
            return word.name + " needs a value";
        }
        const std::string value = word.value ? *word.value : arguments_[next_++];
        if (value.empty()) {
            return word.name + " needs a value";
        }
        if (text != nullptr) {
            options_.*text->member = value;
            return "";
        }
        const auto jobs = NumberOfJobs(value);
        options_.jobs = jobs.value_or(0);
        return jobs ? "" : word.name + " needs a number from 1 on, not '" + value + "'";
    }

    std::string CheckTogether() const {
        if (options_.folders.empty()) {
            return "no folder given";
        }
        if (options_.verify && (options_.no_verify || !options_.hosts.empty())) {
            return "--verify reads what is here: it goes neither with --no-verify nor with --hosts";
        }
        if (options_.rename && !options_.hosts.empty()) {
            return "--rename and --hosts do not go together: another machine cannot see which names are free "
                   "here";
        }
        return "";
    }

    std::span<const std::string> arguments_;
    BatchOptions& options_;
    std::size_t next_ = 0;
};

}  // namespace

std::string ReadBatchOptions(std::span<const std::string> arguments, BatchOptions& options) {
    return Reader(arguments, options).Read();
}
