// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_CHECKSUM_LISTS_H
#define VELMARCON_BATCH_CHECKSUM_LISTS_H

#include <map>
#include <string>

/// The check sums of a run, which end up in a file SHA256SUMS in each output folder.
class ChecksumLists {
  public:
    /// Sets the check sum of the file `dng`. An empty one takes its line, which is outdated, out of the list.
    void Set(const std::string& dng, const std::string& sum);

    /// Brings the files up to date; other lines in them stay. A list without lines is removed. Returns
    /// whether all could be written, and prints a line on standard error for each that could not.
    [[nodiscard]] bool Write() const;

  private:
    std::map<std::string, std::map<std::string, std::string>> sums_;  ///< by folder and name
};

#endif  // VELMARCON_BATCH_CHECKSUM_LISTS_H
