// SPDX-License-Identifier: MIT
#ifndef VELMARCON_APP_REACH_H
#define VELMARCON_APP_REACH_H

#include <string>
#include <vector>

#include "app/run_settings.h"

/// The folders and files that a run needs, once its options are read.
struct Reach {
    std::vector<std::string> read_folders;
    std::vector<std::string> written_folders;  ///< files in them are read, made, renamed and removed
    std::vector<std::string> read_files;       ///< links, each to a file that may stand anywhere
};

/// What a run with these settings needs; `sensor_database` is the path of sensdb.ini. Links are looked at as
/// they stand now: a folder or file that one leads to later is out of reach.
Reach ReachOf(const RunSettings& settings, const std::string& sensor_database);

#endif  // VELMARCON_APP_REACH_H
