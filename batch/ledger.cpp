// SPDX-License-Identifier: MIT
#include "batch/ledger.h"

#include <algorithm>
#include <string_view>

#include "batch/fields.h"
#include "system/file_system.h"
#include "system/replacement_file.h"
#include "system/system_path.h"

namespace {

/// The fields of an entry in the file: the DNG, seven that stay together, the options, and whether it is on
/// the disk. An entry without source is a removal.
constexpr std::size_t kFields = 10;
constexpr std::size_t kStates = 7;

/// Options in one text: each after its length and a colon.
std::string JoinedOptions(const std::vector<std::string>& options) {
    std::string joined;
    for (const std::string& option : options) {
        joined += std::to_string(option.size()) + ":" + option;
    }
    return joined;
}

std::vector<std::string> SplitOptions(const std::string& joined) {
    std::vector<std::string> options;
    for (std::size_t at = 0; at < joined.size();) {
        const std::size_t colon = std::min(joined.find(':', at), joined.size());
        const auto length = fields::Number(std::string_view(joined).substr(at, colon - at));
        if (!length || colon == joined.size() || *length > joined.size() - colon - 1) {
            break;
        }
        options.push_back(joined.substr(colon + 1, static_cast<std::size_t>(*length)));
        at = colon + 1 + static_cast<std::size_t>(*length);
    }
    return options;
}

}  // namespace

std::error_code Ledger::Open(const std::string& path) {
    path_ = path;
    if (!ReadFile() && file_system::IsTaken(path)) {
        return std::make_error_code(std::errc::io_error);
    }
    // The file may end in a piece of an entry: what is added after it would not be read.
    return Compact();
}

bool Ledger::ReadFile() {
    std::ifstream file;
    if (system_path::OpenPlainFile(path_, file)) {
        return false;
    }
    file.seekg(0);
    std::vector<std::string> texts;
    for (std::string text; std::getline(file, text, '\0') && !file.eof();) {
        texts.push_back(text);
        if (texts.size() == kFields) {
            Take(texts);
            texts.clear();
        }
    }
    return !file.bad();
}

void Ledger::Take(const std::vector<std::string>& texts) {
    if (texts[1].empty()) {
        kept_.erase(texts[0]);
    } else {
        const std::vector<std::string> states(texts.begin() + 1, texts.begin() + 1 + kStates);
        kept_[texts[0]] = {fields::Joined(states), NumberOf(texts[kStates + 1]), texts[kStates + 2] == "1"};
    }
}

/// There are few: nearly every run has the same.
std::uint32_t Ledger::NumberOf(const std::string& options) {
    const auto found = std::ranges::find(options_, options);
    if (found == options_.end()) {
        options_.push_back(options);
        return static_cast<std::uint32_t>(options_.size() - 1);
    }
    return static_cast<std::uint32_t>(found - options_.begin());
}

std::optional<LedgerEntry> Ledger::Find(const std::string& dng) const {
    const auto found = kept_.find(dng);
    if (found == kept_.end()) {
        return std::nullopt;
    }
    const std::vector<std::string> texts = fields::Split(found->second.states);
    if (texts.size() != kStates) {
        return std::nullopt;
    }
    return LedgerEntry{texts[0],
                       texts[1],
                       texts[2],
                       texts[3],
                       texts[4],
                       texts[5],
                       texts[6],
                       SplitOptions(options_[found->second.options]),
                       found->second.on_disk};
}

std::string Ledger::BytesOf(const std::string& dng, const Kept& kept) const {
    const std::vector<std::string> rest = {options_[kept.options], kept.on_disk ? "1" : "0"};
    return dng + '\0' + kept.states + fields::Joined(rest);
}

bool Ledger::Append(const std::string& bytes) {
    file_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return static_cast<bool>(file_.flush());
}

bool Ledger::Add(const std::string& dng, const LedgerEntry& entry) {
    const std::vector<std::string> states = {entry.source,    entry.raw_state, entry.jpg_state,
                                             entry.bia_state, entry.dng_state, entry.fingerprint,
                                             entry.flaws};
    const Kept kept = {fields::Joined(states), NumberOf(JoinedOptions(entry.options)), entry.on_disk};
    kept_[dng] = kept;
    return Append(BytesOf(dng, kept));
}

bool Ledger::Remove(const std::string& dng) {
    kept_.erase(dng);
    std::vector<std::string> removal(kFields);
    removal[0] = dng;
    return Append(fields::Joined(removal));
}

std::error_code Ledger::Compact() {
    file_.close();
    file_.clear();
    std::uint64_t size = 0;
    ReplacementFile compact;
    if (const std::error_code error = compact.Open(path_, ReplacementFile::Existing::kReplace)) {
        return error;
    }
    for (const auto& [dng, kept] : kept_) {
        const std::string bytes = BytesOf(dng, kept);
        compact.Write(bytes);
        size += bytes.size();
    }
    if (const std::error_code error = compact.Commit(size)) {
        return error;
    }
    file_.open(system_path::ToSystem(path_), std::ios::binary | std::ios::app);
    return file_ ? std::error_code() : std::make_error_code(std::errc::io_error);
}

LedgerEntry EntryOf(const Record& record, const std::string& source,
                    const std::vector<std::string>& options) {
    return {source,           record.raw_state, record.jpg_state,
            record.bia_state, record.dng_state, record.fingerprint,
            record.flaws,     options,          false};
}
