// SPDX-License-Identifier: MIT
#include "dng/camera_image.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <optional>
#include <span>

#include "dng/ifd.h"
#include "dng/linearization.h"
#include "dng/tag_values.h"
#include "input/preview.h"
#include "system/pixel_memory.h"
#include "tiff/tags.h"

namespace {

/// Contiguous strips, as the camera writes them.
struct Strips {
    std::uint64_t offset = 0;  ///< of the first one
    std::uint64_t size = 0;    ///< bytes of all strips
};

std::optional<Strips> FindStrips(const IFD& ifd) {
    const auto offsets = ifd::Get<std::uint32_t>(ifd, tag::kStripOffsets);
    const auto sizes = ifd::Get<std::uint32_t>(ifd, tag::kStripByteCounts);
    if (offsets.empty() || sizes.empty()) {
        return std::nullopt;
    }
    return Strips{offsets.front(), std::accumulate(sizes.begin(), sizes.end(), std::uint64_t{0})};
}

/// Reads `bytes.size()` bytes at `offset`. Returns whether all of them were there; missing bytes stay
/// unchanged.
bool ReadBytes(InputFile& file, std::uint64_t offset, std::span<std::uint8_t> bytes) {
    std::ifstream& stream = file.stream();
    stream.clear();
    stream.seekg(static_cast<std::streamoff>(offset));
    stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return stream.good();
}

/// How the raw image is stored.
struct RawLayout {
    std::uint64_t width = 0;
    std::uint64_t height = 0;
    std::uint64_t sample_bytes = 0;
    std::optional<LinearizationTable> table;  ///< for 8-bit samples only

    std::uint64_t Pixels() const { return width * height; }
    std::uint64_t Bytes() const { return Pixels() * sample_bytes; }
};

std::optional<LinearizationTable> FindTable(const IFD& ifd) {
    const auto values = ifd::Get<std::uint16_t>(ifd, tag::kLinearizationTable);
    LinearizationTable table = {};
    if (values.size() < table.size()) {
        return std::nullopt;
    }
    std::copy_n(values.begin(), table.size(), table.begin());
    return table;
}

/// The layout, if it is one of the two known ones: the camera's, and that of a repaired DNG.
std::optional<RawLayout> FindRawLayout(const IFD& ifd) {
    constexpr std::uint32_t camera_bits = 8;
    constexpr std::uint32_t repaired_bits = tag_values::kRawBitsPerSample;
    const auto width = ifd::FirstNumber(ifd, tag::kImageWidth);
    const auto height = ifd::FirstNumber(ifd, tag::kImageLength);
    const auto bits = ifd::FirstNumber(ifd, tag::kBitsPerSample);
    const bool compressed = ifd::FirstNumber(ifd, tag::kCompression).value_or(tag_values::kUncompressed) !=
                            tag_values::kUncompressed;
    if (!width || !height || *width == 0 || *height == 0 || compressed) {
        return std::nullopt;
    }
    const auto table = FindTable(ifd);
    if (bits == camera_bits && table) {
        return RawLayout{*width, *height, 1, table};
    }
    if (bits == repaired_bits && !ifd.contains(tag::kLinearizationTable)) {
        return RawLayout{*width, *height, 2, std::nullopt};
    }
    return std::nullopt;
}

std::span<std::uint8_t> AsBytes(std::span<Pixel> pixels) {
    return {reinterpret_cast<std::uint8_t*>(pixels.data()), pixels.size_bytes()};
}

/// Reads in pieces that stay in the processor's cache while they are cleared, read and looked up. Pixels of
/// an earlier image are overwritten without being cleared.
bool ReadPixels(InputFile& file, std::uint64_t offset, const RawLayout& layout, std::vector<Pixel>& pixels) {
    constexpr std::size_t piece = 256UL * 1024;  // pixels
    const auto count = static_cast<std::size_t>(layout.Pixels());
    std::vector<std::uint8_t> samples(layout.table ? std::min(piece, count) : 0);
    pixel_memory::Reserve(pixels, count);
    pixels.resize(std::min(pixels.size(), count));
    for (std::size_t done = 0; done < count; done += piece) {
        const std::size_t end = std::min(done + piece, count);
        pixels.resize(std::max(pixels.size(), end));
        const auto next = std::span(pixels).subspan(done, end - done);
        const auto stored = layout.table ? std::span(samples).first(next.size()) : AsBytes(next);
        if (!ReadBytes(file, offset + done * layout.sample_bytes, stored)) {
            return false;
        }
        if (layout.table) {
            Linearize(stored, *layout.table, next);
        }
    }
    return true;
}

}  // namespace

bool ReadImages(InputFile& file, const IFD& preview_ifd, const IFD& raw_ifd, CameraImage& image) {
    const auto preview = FindStrips(preview_ifd);
    const auto raw = FindStrips(raw_ifd);
    const auto layout = FindRawLayout(raw_ifd);
    if (!preview || !raw || !layout) {
        return false;
    }
    // Width and height have 32 bits each, so their product fits into 64 bits; it is compared with the file's
    // size before it is doubled.
    constexpr std::uint64_t most_pixels = std::numeric_limits<std::int32_t>::max() / sizeof(Pixel);
    if (preview->size > file.size() || raw->size > file.size() - preview->size ||
        layout->Pixels() > std::min(raw->size, most_pixels) || layout->Bytes() > raw->size) {
        return false;
    }
    image.width = static_cast<int>(layout->width);
    image.height = static_cast<int>(layout->height);
    image.preview.resize(PreviewSampler::kSize);
    const auto preview_bytes = std::min<std::uint64_t>(preview->size, image.preview.size());
    // A preview that runs past the end of the file is tolerated; a read error is not.
    const bool readable =
        ReadBytes(file, preview->offset,
                  std::span(image.preview).first(static_cast<std::size_t>(preview_bytes))) ||
        file.stream().eof();
    return readable && ReadPixels(file, raw->offset, *layout, image.pixels);
}
