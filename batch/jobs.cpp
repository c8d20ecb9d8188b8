// SPDX-License-Identifier: MIT
#include "batch/jobs.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "batch/fields.h"

namespace jobs {

namespace {

constexpr std::array<std::string_view, 5> kModes = {"convert", "check", "prove", "look", "verify"};
constexpr std::size_t kTaskFields = 7;  ///< before the options

std::optional<TaskMode> ModeFrom(std::string_view word) {
    const auto* const found = std::ranges::find(kModes, word);
    return found != kModes.end() ? std::optional(static_cast<TaskMode>(found - kModes.begin()))
                                 : std::nullopt;
}

std::string Flag(bool flag) {
    return flag ? "1" : "0";
}

/// The options that follow their number, which stands at `at`; moves on to what follows them. Nothing when
/// they are not all there.
std::optional<std::vector<std::string>> TakeOptions(const std::vector<std::string>& texts, std::size_t& at) {
    const auto count = fields::Number(texts[at++]);
    if (!count || *count > texts.size() - at) {
        return std::nullopt;
    }
    const auto begin = texts.begin() + static_cast<std::ptrdiff_t>(at);
    at += static_cast<std::size_t>(*count);
    return std::vector<std::string>(begin, texts.begin() + static_cast<std::ptrdiff_t>(at));
}

void PutOptions(const std::vector<std::string>& options, std::vector<std::string>& texts) {
    texts.push_back(std::to_string(options.size()));
    texts.insert(texts.end(), options.begin(), options.end());
}

}  // namespace

std::string FileOf(const std::string& state, std::uint64_t job) {
    return state + "/jobs/" + std::to_string(job);
}

std::string RecordsOf(const std::string& state, std::uint64_t job) {
    return state + "/records/" + std::to_string(job);
}

std::string SettingsOf(const std::string& state) {
    return state + "/settings";
}

std::error_code Write(const std::string& path, const std::vector<Task>& tasks) {
    std::vector<std::string> texts;
    for (const Task& task : tasks) {
        texts.push_back(std::to_string(task.picture));
        texts.emplace_back(kModes.at(static_cast<std::size_t>(task.mode)));
        texts.push_back(task.input);
        texts.push_back(task.dng);
        texts.push_back(task.fingerprint);
        texts.push_back(Flag(task.options_known));
        PutOptions(task.options, texts);
    }
    return fields::WritePlain(path, fields::Joined(texts));
}

std::optional<std::vector<Task>> Read(const std::string& path) {
    const auto bytes = fields::ReadWhole(path);
    const std::vector<std::string> texts = fields::Split(bytes.value_or(""));
    std::vector<Task> tasks;
    for (std::size_t at = 0; at < texts.size();) {
        if (texts.size() - at < kTaskFields) {
            return std::nullopt;
        }
        const auto picture = fields::Number(texts[at]);
        const auto mode = ModeFrom(texts[at + 1]);
        Task task = {picture.value_or(0), mode.value_or(TaskMode::kLook),
                     texts[at + 2],       texts[at + 3],
                     texts[at + 4],       {},
                     texts[at + 5] == "1"};
        at += kTaskFields - 1;
        auto options = TakeOptions(texts, at);
        if (!picture || !mode || !options) {
            return std::nullopt;
        }
        task.options = *std::move(options);
        tasks.push_back(std::move(task));
    }
    return bytes ? std::optional(std::move(tasks)) : std::nullopt;
}

std::error_code WriteSettings(const std::string& path, const WorkerSettings& settings) {
    std::vector<std::string> texts = {settings.databases,       Flag(settings.verify),
                                      Flag(settings.rename),    Flag(settings.keep_time),
                                      Flag(settings.checksums), Flag(settings.accept_damaged)};
    PutOptions(settings.options, texts);
    return fields::WritePlain(path, fields::Joined(texts));
}

std::optional<WorkerSettings> ReadSettings(const std::string& path) {
    constexpr std::size_t fixed = 6;
    const auto bytes = fields::ReadWhole(path);
    const std::vector<std::string> texts = fields::Split(bytes.value_or(""));
    if (texts.size() <= fixed) {
        return std::nullopt;
    }
    std::size_t at = fixed;
    const auto options = TakeOptions(texts, at);
    if (!options) {
        return std::nullopt;
    }
    return WorkerSettings{*options,        texts[0],        texts[1] == "1", texts[2] == "1",
                          texts[3] == "1", texts[4] == "1", texts[5] == "1"};
}

}  // namespace jobs
