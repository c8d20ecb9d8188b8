// SPDX-License-Identifier: MIT
#include "tests/support/camera_dng.h"

#include "samples/sensor_dump.h"
#include "tiff/tags.h"

namespace support {

namespace {

/// An image with `value` computed for each column and row.
template <typename Value>
std::vector<Value> Image(int width, int height, Value (*value)(int x, int y)) {
    std::vector<Value> image;
    image.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            image.push_back(value(x, y));
        }
    }
    return image;
}

}  // namespace

std::uint8_t CameraByte(int x, int y) {
    return static_cast<std::uint8_t>((x * 7 + y * 13 + x * y % 5) % 256);
}

std::uint16_t CameraLevel(std::uint8_t byte) {
    return static_cast<std::uint16_t>(byte * byte / 4);
}

std::vector<std::uint16_t> CameraLevels(int width, int height) {
    return Image<std::uint16_t>(width, height, [](int x, int y) { return CameraLevel(CameraByte(x, y)); });
}

void InterpolateColumn(std::vector<std::uint16_t>& pixels, int width, int column, int first_row) {
    const int height = static_cast<int>(pixels.size()) / width;
    for (int row = first_row; row < height; ++row) {
        const auto at = [&](int columns, int rows) -> std::uint16_t& {
            return pixels.at(static_cast<std::size_t>(row + rows) * static_cast<std::size_t>(width) +
                             static_cast<std::size_t>(column + columns));
        };
        const int beside = at(-2, 0) + at(2, 0);
        const int above = at(-1, -1) + at(1, -1);
        if (row % 2 == column % 2) {
            at(0, 0) = static_cast<std::uint16_t>(beside / 2);
        } else if (row == height - 1) {
            at(0, 0) = static_cast<std::uint16_t>((4 * above + beside + 5) / 10);
        } else {
            at(0, 0) = static_cast<std::uint16_t>((2 * (above + at(-1, 1) + at(1, 1)) + beside + 5) / 10);
        }
    }
}

std::vector<std::uint8_t> CameraPreview() {
    constexpr std::size_t size = 230400;
    std::vector<std::uint8_t> preview;
    preview.reserve(size);
    for (std::size_t i = 0; i < size; ++i) {
        preview.push_back(static_cast<std::uint8_t>(1 + i % 251));
    }
    return preview;
}

samples::CameraDngFile SmallCameraDng(int width, int height, const samples::Shot& shot) {
    auto file = samples::CameraDng(shot, CameraPreview(), Image<std::uint8_t>(width, height, CameraByte));
    const auto columns = static_cast<std::uint32_t>(width);
    const auto rows = static_cast<std::uint32_t>(height);
    samples::Set(file.raw_ifd, samples::Long(tag::kImageWidth, columns));
    samples::Set(file.raw_ifd, samples::Long(tag::kImageLength, rows));
    samples::Set(file.raw_ifd, samples::Long(tag::kRowsPerStrip, rows));
    samples::Set(file.raw_ifd, samples::Long(tag::kStripOffsets, samples::kDngRawOffset));
    samples::Set(file.raw_ifd, samples::Long(tag::kStripByteCounts, columns * rows));
    return file;
}

samples::CameraDngFile FullCameraDng(const samples::Shot& shot) {
    return samples::CameraDng(
        shot, CameraPreview(),
        Image<std::uint8_t>(samples::kCroppedWidth, samples::kCroppedHeight, CameraByte));
}

}  // namespace support
