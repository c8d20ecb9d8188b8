// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PROOF_PAIR_ROWS_H
#define VELMARCON_BATCH_PROOF_PAIR_ROWS_H

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "batch/proof/file_rows.h"
#include "input/preview.h"
#include "input/read_input_data.h"
#include "system/sequential_file.h"

/// The rows that a conversion makes of a RAW file and its dark frame, if it takes one, without memory for an
/// image.
class PairRows {
  public:
    /// `record` names the files. Without `with_preview` none is made.
    PairRows(const ReadInputData& record, bool with_preview);

    /// The next row, from top to bottom; nothing when the files cannot be read.
    std::optional<std::span<const std::uint16_t>> Next();

    /// Of all rows that were asked for.
    const std::vector<std::uint8_t>& preview() const { return preview_; }

    /// Whether the rows so far were those of the files.
    bool AreIntact();

    /// The name of the file that cannot be read.
    const std::string& unreadable() const { return unreadable_; }

  private:
    std::optional<FileRows> Open(SequentialFile& file, const std::string& name);
    std::optional<std::span<const std::uint16_t>> NextOf(std::optional<FileRows>& rows,
                                                         const std::string& name);

    const ReadInputData& record_;
    SequentialFile raw_;
    SequentialFile dark_;
    std::optional<FileRows> raw_rows_;
    std::optional<FileRows> dark_rows_;
    std::vector<std::uint16_t> difference_;  ///< of the two
    std::vector<std::uint8_t> preview_;
    PreviewSampler sampler_;
    std::int32_t y_ = 0;
    std::string unreadable_;
};

#endif  // VELMARCON_BATCH_PROOF_PAIR_ROWS_H
