// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_RECORDS_H
#define VELMARCON_BATCH_RECORDS_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What became of a picture.
enum class Verdict : std::uint8_t {
    kBegun,      ///< nothing yet
    kConverted,  ///< it has a new DNG
    kKept,       ///< the DNG that is there is its own
    kFailed,
    kDiskFull,  ///< there was no room for it
};

/// The word for it in reports.
std::string_view VerdictWord(Verdict verdict);

/// The DNG was proved to be made with the options of its task.
constexpr char kAsSupposed = '=';
/// The DNG was proved to be made with other options, which follow, separated by blanks.
constexpr char kGuessed = ':';
/// The DNG was compared, and is not what it must be.
constexpr char kDiffers = '!';

/// What a worker tells of a picture.
struct Record {
    /// `reason` is why, `reason_kind` the same without names.
    void Fail(const std::string& reason, const std::string& reason_kind);

    Verdict verdict = Verdict::kBegun;
    std::uint64_t picture = 0;  ///< its number in the run
    std::string text;           ///< why it failed, or what its DNG lacks
    std::string kind;           ///< of failure: the reason without names
    std::string flaws;          ///< what is wrong with its files, although there is a DNG
    std::string dng;            ///< path of the DNG; with an archive of a host, where in it the DNG stands
    std::string raw_state;      ///< its files before the work began: see StateText
    std::string jpg_state;
    std::string bia_state;
    std::string dng_state;
    std::string fingerprint;  ///< of the DNG; empty when it was not read
    std::string sha256;       ///< of the DNG; empty when not asked for
    std::string made_with;    ///< of a DNG that was there: one of the three above, or empty: not known
    std::uint64_t milliseconds = 0;
};

/// The bytes of a record in a file of them.
std::string RecordBytes(const Record& record);

/// Takes the whole records out of `bytes`, and counts in `used` the bytes that they take. A record that a
/// power cut or a kill left half-written ends it.
std::vector<Record> RecordsIn(std::string_view bytes, std::size_t& used);

/// What tells one version of the file at `path` from another: length and time; empty when there is no file.
std::string StateText(const std::string& path);

/// The same with all that the system tells without reading the file: where it is, and when it or what is
/// known of it changed last. Nobody changes its bytes without changing this.
std::string FullStateText(const std::string& path);

/// Whether the file that was like `then` is like `now`: as long, and newer by no more than the coarsest clock
/// of a file system ticks.
bool SameState(const std::string& then, const std::string& now);

#endif  // VELMARCON_BATCH_RECORDS_H
