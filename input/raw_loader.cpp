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
#include "input/preview.h"
#include "input/raw_layout.h"
#include "input/read_input_data.h"
#include "system/input_file.h"
#include "system/pixel_memory.h"

namespace {

/// Reads the words of a sensor dump from the first `size` bytes of `file`. Words beyond the end of the file
/// are 0; bytes after `size` are ignored. Returns false if the file can't be read.
[[nodiscard]] bool ReadWords(InputFile& file, std::uint64_t size, std::vector<Pixel>& words) {
    pixel_memory::Resize(words, raw_layout::kFileWords);
    const std::span bytes(reinterpret_cast<std::uint8_t*>(words.data()), raw_layout::kFileBytes);
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(size, bytes.size()));
    std::ranges::fill(bytes.subspan(count), std::uint8_t{0});
    return file.ReadStart(bytes.first(count));
}

/// Index of the first word of row `y` in a sensor dump.
constexpr std::size_t RowStart(std::size_t y) {
    return raw_layout::kLeadingWords + y * raw_layout::kRowWords;
}

/// Through bare pointers: a check of each index would keep the loop from using vectors. `dark` is as long as
/// `row`.
void SubtractDarkRow(std::span<Pixel> row, std::span<const Pixel> dark) {
    Pixel* const pixels = row.data();
    const Pixel* const dark_pixels = dark.data();
    for (std::size_t x = 0; x < row.size(); ++x) {
        pixels[x] = static_cast<Pixel>(pixels[x] - std::min(pixels[x], dark_pixels[x]));
    }
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
    if (!ReadWords(raw, raw.size(), ImageData)) {
        return kRawUnreadable;
    }

    if (SubtractBia) {
        InputFile bia;
        // Reads as many bytes as the RAW file has, regardless of the size of the BIA file.
        if (!bia.Open(Folder + BiaFileName) || !ReadWords(bia, raw.size(), BiaData)) {
            return kBiaDamaged;
        }
    }
    return ExtractRawImage();
}

int ReadInputData::ExtractRawImage() {
    using raw_layout::kPixelCount;
    Width = raw_layout::kImageWidth;
    Height = raw_layout::kImageHeight;
    // Compares bytes with pixels on purpose: half a dump is accepted, and its missing words are black.
    if (ImageSize < kPixelCount) {
        return kRawDamaged;
    }
    ImageSize = kPixelCount;
    PreviewSize = PreviewSampler::kSize;
    PreviewData.resize(PreviewSampler::kSize);
    PreviewSampler preview(Width, Height, PreviewData);

    ImageData.resize(raw_layout::kFileWords);
    if (SubtractBia) {
        BiaData.resize(raw_layout::kFileWords);
    }
    // Each row moves down over words that are no longer needed, so one buffer serves both dump and image.
    const std::span words(ImageData);
    constexpr auto width = static_cast<std::size_t>(raw_layout::kImageWidth);
    for (std::int32_t y = 0; y < Height; ++y) {
        const auto source = RowStart(static_cast<std::size_t>(y));
        const auto row = words.subspan(static_cast<std::size_t>(y) * width, width);
        std::copy_n(words.begin() + static_cast<std::ptrdiff_t>(source), width, row.begin());
        preview.AddRow(y, row);  // the preview shows the sensor data before the dark frame is subtracted
        if (SubtractBia) {
            SubtractDarkRow(row, std::span(BiaData).subspan(source, width));
        }
    }
    ImageData.resize(static_cast<std::size_t>(ImageSize));
    step_lines::End(Verbose);
    return 0;
}
