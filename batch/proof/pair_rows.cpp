// SPDX-License-Identifier: MIT
#include "batch/proof/pair_rows.h"

#include <algorithm>

#include "batch/proof/pixel_proof.h"
#include "input/raw_layout.h"

PairRows::PairRows(const ReadInputData& record, bool with_preview)
    : record_(record),
      raw_rows_(Open(raw_, record.RawFileName)),
      dark_rows_(record.SubtractBia ? Open(dark_, record.BiaFileName) : std::nullopt),
      difference_(record.SubtractBia ? raw_layout::kImageWidth : 0),
      preview_(with_preview ? PreviewSampler::kSize : 0),
      sampler_(raw_layout::kImageWidth, raw_layout::kImageHeight, preview_) {}

std::optional<FileRows> PairRows::Open(SequentialFile& file, const std::string& name) {
    constexpr std::uint64_t start = raw_layout::kLeadingWords * sizeof(std::uint16_t);
    if (!file.Open(record_.Folder + name)) {
        return std::nullopt;
    }
    file.Skip(start);
    // A conversion reads no more of the dark frame than of the RAW file.
    return FileRows(file, raw_.size() - std::min(raw_.size(), start), raw_layout::kRowWords);
}

bool PairRows::AreIntact() {
    if (!raw_.IsIntact() || !dark_.IsIntact()) {
        unreadable_ = raw_.IsIntact() ? record_.BiaFileName : record_.RawFileName;
    }
    return unreadable_.empty();
}

std::optional<std::span<const std::uint16_t>> PairRows::NextOf(std::optional<FileRows>& rows,
                                                               const std::string& name) {
    const auto row = rows ? rows->Next() : std::nullopt;
    if (!row) {
        unreadable_ = name;
        return std::nullopt;
    }
    return row->first(raw_layout::kImageWidth);
}

std::optional<std::span<const std::uint16_t>> PairRows::Next() {
    const auto raw = NextOf(raw_rows_, record_.RawFileName);
    if (raw && !preview_.empty()) {
        sampler_.AddRow(y_, *raw);  // shows the sensor data as they were before
    }
    ++y_;
    if (!raw || !record_.SubtractBia) {
        return raw;
    }
    const auto dark = NextOf(dark_rows_, record_.BiaFileName);
    if (!dark) {
        return std::nullopt;
    }
    SubtractDark(*raw, *dark, difference_);
    return difference_;
}
