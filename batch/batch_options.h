// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_BATCH_OPTIONS_H
#define VELMARCON_BATCH_BATCH_OPTIONS_H

#include <span>
#include <string>
#include <vector>

/// What a run is asked for.
struct BatchOptions {
    std::vector<std::string> folders;
    std::string output;  ///< empty: next to the RAW files
    std::string state;   ///< folder in which states are kept; empty: the usual one
    std::string hosts;
    std::string list;       ///< file with the names of pictures, each ended by a NUL; "-": standard input
    std::string json;       ///< file for a line of JSON for each picture
    unsigned int jobs = 0;  ///< 0: one on each core
    bool fresh = false;
    bool dry_run = false;
    bool quiet = false;
    bool verify = false;     ///< convert nothing, prove what is there
    bool no_verify = false;  ///< do not read back what was written
    bool checksums = false;
    bool rename = false;
    bool accept_damaged = false;
    bool anyway = false;
    bool notify = false;
    bool keep_time = false;
    bool newest_first = false;
    bool help = false;
    bool version = false;
    std::vector<std::string> conversion;  ///< the options of velmarcon, after --
};

/// Reads the arguments, the program's name not among them. Returns what is wrong with them, or an empty text.
[[nodiscard]] std::string ReadBatchOptions(std::span<const std::string> arguments, BatchOptions& options);

/// What --help prints.
extern const char* const kBatchHelp;

#endif  // VELMARCON_BATCH_BATCH_OPTIONS_H
