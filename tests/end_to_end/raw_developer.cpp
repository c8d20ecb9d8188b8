// SPDX-License-Identifier: MIT
#include "tests/end_to_end/raw_developer.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <span>

#include <gtest/gtest.h>
#include <libraw.h>

namespace end_to_end {

namespace {

/// On the heap, because LibRaw objects are too large for the stack.
std::unique_ptr<LibRaw> Open(const std::string& path) {
    auto reader = std::make_unique<LibRaw>();
    EXPECT_EQ(reader->open_file(path.c_str()), LIBRAW_SUCCESS) << path;
    return reader;
}

std::vector<std::uint8_t> Thumbnail(LibRaw& reader) {
    if (reader.unpack_thumb() != LIBRAW_SUCCESS) {
        return {};
    }
    const auto& thumbnail = reader.imgdata.thumbnail;
    EXPECT_EQ(thumbnail.tformat, LIBRAW_THUMBNAIL_BITMAP);
    EXPECT_EQ(thumbnail.twidth, 320);
    EXPECT_EQ(thumbnail.theight, 240);
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(thumbnail.thumb);
    return {bytes, bytes + thumbnail.tlength};
}

}  // namespace

UnpackedRaw Unpack(const std::string& path) {
    const auto reader = Open(path);
    EXPECT_EQ(reader->unpack(), LIBRAW_SUCCESS);
    const auto& sizes = reader->imgdata.sizes;
    EXPECT_EQ(sizes.raw_pitch, 2U * sizes.raw_width);
    const std::span pixels(reader->imgdata.rawdata.raw_image,
                           std::size_t{sizes.raw_width} * sizes.raw_height);
    return {.width = sizes.raw_width,
            .height = sizes.raw_height,
            .pixels = {pixels.begin(), pixels.end()},
            .thumbnail = Thumbnail(*reader)};
}

DevelopedRaw::DevelopedRaw(const std::string& path) {
    const auto reader = Open(path);
    auto& wanted = reader->imgdata.params;
    wanted.half_size = 1;
    wanted.use_camera_wb = 1;
    wanted.no_auto_bright = 1;
    wanted.output_color = 1;  // the primaries of sRGB
    wanted.output_bps = 16;
    wanted.gamm[0] = 1;  // no curve
    wanted.gamm[1] = 1;
    wanted.user_flip = 0;
    // Take the white level from the file. By default LibRaw uses the brightest pixel instead if that reaches
    // three quarters of the file's white level.
    wanted.adjust_maximum_thr = 0;
    EXPECT_EQ(reader->unpack(), LIBRAW_SUCCESS);
    EXPECT_EQ(reader->dcraw_process(), LIBRAW_SUCCESS);
    const std::unique_ptr<libraw_processed_image_t, decltype(&LibRaw::dcraw_clear_mem)> picture(
        reader->dcraw_make_mem_image(), LibRaw::dcraw_clear_mem);
    const auto* const samples = reinterpret_cast<const std::uint16_t*>(picture->data);
    width_ = picture->width;
    samples_.assign(samples, samples + picture->data_size / sizeof(std::uint16_t));
}

samples::LinearRgb DevelopedRaw::Mean(int x, int y, int width, int height) const {
    constexpr double white = 65535;
    std::array<double, 3> sum = {};
    double whites = 0;
    for (int row = y / 2; row < (y + height) / 2; ++row) {
        for (int column = x / 2; column < (x + width) / 2; ++column) {
            const auto pixel = static_cast<std::size_t>(row) * static_cast<std::size_t>(width_) +
                               static_cast<std::size_t>(column);
            for (std::size_t i = 0; i < sum.size(); ++i) {
                sum.at(i) += samples_.at(3 * pixel + i);
            }
            whites += white;
        }
    }
    samples::LinearRgb mean = {};
    std::ranges::transform(sum, mean.begin(),
                           [whites](double total) { return static_cast<float>(total / whites); });
    return mean;
}

double DevelopedRaw::MeanDifference(const DevelopedRaw& other) const {
    constexpr double step = 257;  // one step of 8-bit samples, in 16-bit samples
    EXPECT_EQ(samples_.size(), other.samples_.size());
    double sum = 0;
    for (std::size_t i = 0; i < samples_.size(); ++i) {
        sum += std::abs(samples_[i] - other.samples_.at(i)) / step;
    }
    return sum / static_cast<double>(samples_.size());
}

}  // namespace end_to_end
