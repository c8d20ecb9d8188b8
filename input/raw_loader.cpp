// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "base/error_codes.h"
#include "base/pixel.h"
#include "errors/step_lines.h"
#include "input/dark_rows.h"
#include "input/preview.h"
#include "input/raw_layout.h"
#include "input/raw_words.h"
#include "input/read_input_data.h"
#include "system/input_file.h"
#include "system/pixel_memory.h"

namespace {

/// Subtracts the next row of the dark frame. Returns false if that can't be read. Through bare pointers: a
/// check of each index would keep the loop from using vectors.
[[nodiscard]] bool SubtractNext(DarkRows& dark, std::span<Pixel> row) {
    const std::span<const Pixel> dark_row = dark.Next();
    if (dark_row.size() != row.size()) {
        return false;
    }
    Pixel* const pixels = row.data();
    const Pixel* const dark_pixels = dark_row.data();
    for (std::size_t x = 0; x < row.size(); ++x) {
        pixels[x] = static_cast<Pixel>(pixels[x] - std::min(pixels[x], dark_pixels[x]));
    }
    return true;
}

}  // namespace

int ReadInputData::LoadRawFile() {
    step_lines::Begin(Verbose, "Reading", RawFileName.c_str());
    InputFile raw;
    if (!raw.Open(Folder + RawFileName)) {
        return kRawNotFound;
    }
    // A sensor dump has a hundredth of the size that fits ImageSize, so a file that does not fit is not a
    // dump.
    if (raw.size() > static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max())) {
        return kRawDamaged;
    }
    ImageSize = static_cast<std::int32_t>(raw.size());
    // A short file is accepted, see ExtractRawImage; a picture with a hole due to a read error is not.
    pixel_memory::Resize(ImageData, raw_layout::kFileWords);
    if (!raw_words::Read(raw, raw.size(), 0, ImageData)) {
        return kRawUnreadable;
    }
    return ExtractRawImage();
}

int ReadInputData::ExtractRawImage() {
    using raw_layout::kPixelCount;
    Width = raw_layout::kImageWidth;
    Height = raw_layout::kImageHeight;
    PreviewSize = PreviewSampler::kSize;
    PreviewData.resize(PreviewSampler::kSize);
    PreviewSampler preview(Width, Height, PreviewData);

    // Counts as many bytes as the RAW file has, regardless of the size of the BIA file.
    DarkRows dark(static_cast<std::uint64_t>(ImageSize), BiaData);
    if (SubtractBia && !dark.Open(Folder + BiaFileName)) {
        return kBiaDamaged;
    }
    ImageData.resize(raw_layout::kFileWords);
    // Each row moves down over words that are no longer needed, so one buffer serves both dump and image.
    const std::span words(ImageData);
    constexpr auto width = static_cast<std::size_t>(raw_layout::kImageWidth);
    for (std::int32_t y = 0; y < Height; ++y) {
        const auto source = raw_layout::RowStart(static_cast<std::size_t>(y));
        const auto row = words.subspan(static_cast<std::size_t>(y) * width, width);
        std::copy_n(words.begin() + static_cast<std::ptrdiff_t>(source), width, row.begin());
        preview.AddRow(y, row);  // the preview shows the sensor data before the dark frame is subtracted
        if (SubtractBia && !SubtractNext(dark, row)) {
            return kBiaDamaged;
        }
    }
    // A dark frame that can't be read comes first. Compares bytes with pixels on purpose: half a dump is
    // accepted, and its missing words are black.
    if (ImageSize < kPixelCount) {
        return kRawDamaged;
    }
    ImageSize = kPixelCount;
    ImageData.resize(static_cast<std::size_t>(ImageSize));
    step_lines::End(Verbose);
    return 0;
}
