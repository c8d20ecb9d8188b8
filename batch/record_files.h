// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_RECORD_FILES_H
#define VELMARCON_BATCH_RECORD_FILES_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "batch/records.h"

/// Reads what workers tell while they are at it: a folder with a file of records for each job.
class RecordFiles {
  public:
    explicit RecordFiles(std::string folder) : folder_(std::move(folder)) {}

    /// The records that have come since the last call.
    std::vector<Record> TakeNew();

  private:
    std::string folder_;
    std::map<std::string, std::uint64_t> read_;  ///< bytes, by file
};

#endif  // VELMARCON_BATCH_RECORD_FILES_H
