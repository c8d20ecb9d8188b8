// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_TALLY_H
#define VELMARCON_BATCH_TALLY_H

#include <cstddef>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "batch/records.h"

/// What became of the pictures, so far: counts, the first names of each sort, the report, and lines of JSON
/// for those who want them.
class Tally {
  public:
    /// Opens the report, and the file for JSON unless its path is empty. Returns why one cannot be written,
    /// or an empty text. With `accept_damaged`, what is wrong with a picture's files is a remark.
    [[nodiscard]] std::string Open(const std::string& report, const std::string& json,
                                   const std::string& options, bool accept_damaged);

    /// Has the report say something that concerns no picture.
    void Note(const std::string& line) { report_ << line << "\n"; }

    /// Takes a verdict that is not to change any more.
    void Take(const Record& record, const std::string& input);

    std::size_t converted() const { return converted_; }
    std::size_t kept() const { return kept_; }
    std::size_t failed() const { return failed_; }
    std::size_t remarked() const { return remarked_; }
    std::size_t flawed() const { return flawed_; }

    /// "PATH: REASON", the first of them.
    const std::vector<std::string>& failures() const { return failures_; }
    const std::vector<std::string>& remarks() const { return remarks_; }
    const std::vector<std::string>& flaws() const { return flaws_; }

    /// How many of each kind of failure.
    const std::map<std::string, std::size_t>& kinds() const { return kinds_; }

    /// Whether all lines could be written.
    [[nodiscard]] bool Close();

  private:
    void WriteJson(const Record& record, const std::string& input);

    std::ofstream report_;
    std::ofstream json_;
    std::string options_;
    bool accept_damaged_ = false;
    std::size_t converted_ = 0;
    std::size_t kept_ = 0;
    std::size_t failed_ = 0;
    std::size_t remarked_ = 0;
    std::size_t flawed_ = 0;
    std::vector<std::string> failures_;
    std::vector<std::string> remarks_;
    std::vector<std::string> flaws_;
    std::map<std::string, std::size_t> kinds_;
};

/// `text` as a string of JSON, with its quotes. Bytes that are no UTF-8 become lone surrogates, U+DC80 to
/// U+DCFF, from which they can be told.
std::string JsonString(const std::string& text);

#endif  // VELMARCON_BATCH_TALLY_H
