// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_LEDGER_H
#define VELMARCON_BATCH_LEDGER_H

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <optional>
#include <string>
#include <system_error>
#include <unordered_map>
#include <vector>

#include "batch/records.h"

/// In place of the options of a DNG of which nobody knows what it was made with. No command line can have
/// them.
inline std::vector<std::string> UnknownOptions() {
    return {""};
}

/// What is remembered of a DNG.
struct LedgerEntry {
    std::string source;  ///< path of the picture's RAW file, or of the camera's DNG
    std::string raw_state;
    std::string jpg_state;
    std::string bia_state;
    std::string dng_state;
    std::string fingerprint;
    std::string flaws;
    std::vector<std::string> options;
    bool on_disk = false;  ///< the system has said so, and no comparison has failed since
};

/// The DNGs that runs into the same output have made or found, by their paths: a file to which each is added
/// as it comes. It holds little memory for each.
class Ledger {
  public:
    /// Reads the file at `path`, if it is there. Returns why that failed.
    [[nodiscard]] std::error_code Open(const std::string& path);

    std::optional<LedgerEntry> Find(const std::string& dng) const;

    /// Adds a DNG, or what is new of one. Returns whether it could be written.
    bool Add(const std::string& dng, const LedgerEntry& entry);

    /// Forgets a DNG.
    bool Remove(const std::string& dng);

    /// Writes the file anew, without what is outdated. Returns why that failed.
    [[nodiscard]] std::error_code Compact();

  private:
    struct Kept {
        std::string states;         ///< the fields of the entry but its options
        std::uint32_t options = 0;  ///< number of
        bool on_disk = false;
    };

    [[nodiscard]] bool ReadFile();
    void Take(const std::vector<std::string>& texts);
    std::uint32_t NumberOf(const std::string& options);
    bool Append(const std::string& bytes);
    std::string BytesOf(const std::string& dng, const Kept& kept) const;

    std::string path_;
    std::ofstream file_;
    std::unordered_map<std::string, Kept> kept_;
    std::vector<std::string> options_;  ///< all that occur, joined
};

/// The entry for what a worker tells.
LedgerEntry EntryOf(const Record& record, const std::string& source, const std::vector<std::string>& options);

#endif  // VELMARCON_BATCH_LEDGER_H
