// SPDX-License-Identifier: MIT
#include "batch/records.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "batch/fields.h"
#include "batch/file_facts.h"
#include "system/file_state.h"

namespace {

constexpr std::array<std::string_view, 5> kWords = {"begun", "converted", "kept", "failed", "full"};
constexpr std::size_t kFields = 14;

std::optional<Verdict> VerdictFrom(std::string_view word) {
    const auto* const found = std::ranges::find(kWords, word);
    return found != kWords.end() ? std::optional(static_cast<Verdict>(found - kWords.begin())) : std::nullopt;
}

std::optional<Record> RecordFrom(const std::vector<std::string>& texts) {
    const auto verdict = VerdictFrom(texts[0]);
    const auto number = fields::Number(texts[1]);
    const auto milliseconds = fields::Number(texts[13]);
    if (!verdict || !number || !milliseconds) {
        return std::nullopt;
    }
    return Record{*verdict, *number,  texts[2], texts[3],  texts[4],  texts[5],  texts[6],
                  texts[7], texts[8], texts[9], texts[10], texts[11], texts[12], *milliseconds};
}

/// Behind the NUL of its last field; npos when it is not all there.
std::size_t EndOfRecord(std::string_view bytes, std::size_t begin) {
    std::size_t end = begin;
    for (std::size_t field = 0; field < kFields; ++field) {
        end = bytes.find('\0', end);
        if (end == std::string_view::npos) {
            return end;
        }
        ++end;
    }
    return end;
}

std::string TextOf(const FileState& state) {
    return std::to_string(state.size) + " " + std::to_string(state.modified_seconds) + " " +
           std::to_string(state.modified_nanoseconds);
}

struct Version {
    std::int64_t size = 0;
    std::int64_t seconds = 0;
};

std::optional<Version> VersionFrom(const std::string& text) {
    Version version;
    const char* const end = text.data() + text.size();
    const auto size = std::from_chars(text.data(), end, version.size);
    if (size.ec != std::errc() || size.ptr == end || *size.ptr != ' ') {
        return std::nullopt;
    }
    const auto seconds = std::from_chars(size.ptr + 1, end, version.seconds);
    return seconds.ec == std::errc() ? std::optional(version) : std::nullopt;
}

}  // namespace

void Record::Fail(const std::string& reason, const std::string& reason_kind) {
    verdict = Verdict::kFailed;
    text = reason;
    kind = reason_kind;
}

std::string_view VerdictWord(Verdict verdict) {
    return kWords.at(static_cast<std::size_t>(verdict));
}

std::string RecordBytes(const Record& record) {
    const std::array<std::string, kFields> texts = {std::string(VerdictWord(record.verdict)),
                                                    std::to_string(record.picture),
                                                    record.text,
                                                    record.kind,
                                                    record.flaws,
                                                    record.dng,
                                                    record.raw_state,
                                                    record.jpg_state,
                                                    record.bia_state,
                                                    record.dng_state,
                                                    record.fingerprint,
                                                    record.sha256,
                                                    record.made_with,
                                                    std::to_string(record.milliseconds)};
    return fields::Joined(texts);
}

std::vector<Record> RecordsIn(std::string_view bytes, std::size_t& used) {
    std::vector<Record> records;
    used = 0;
    for (std::size_t end = EndOfRecord(bytes, 0); end != std::string_view::npos;
         end = EndOfRecord(bytes, used)) {
        const auto record = RecordFrom(fields::Split(bytes.substr(used, end - used)));
        if (!record) {
            break;
        }
        records.push_back(*record);
        used = end;
    }
    return records;
}

std::string StateText(const std::string& path) {
    const auto state = StateAt(path);
    return state ? TextOf(*state) : "";
}

std::string FullStateText(const std::string& path) {
    const auto state = StateAt(path);
    return state ? TextOf(*state) + " " + std::to_string(state->changed_seconds) + " " +
                       std::to_string(state->changed_nanoseconds) + " " + std::to_string(state->inode) + " " +
                       std::to_string(state->device)
                 : "";
}

bool SameState(const std::string& then, const std::string& now) {
    constexpr std::int64_t coarsest_tick = 2;
    const auto before = VersionFrom(then);
    const auto after = VersionFrom(now);
    if (!before || !after) {
        return then == now;
    }
    return before->size == after->size && after->seconds <= before->seconds + coarsest_tick;
}
