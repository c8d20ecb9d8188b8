// SPDX-License-Identifier: MIT
// EncodeJpeg with libjpeg.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <jpeglib.h>

#include "samples/camera_jpeg.h"

namespace samples {

namespace {

using FreeMemory = decltype([](unsigned char* memory) { std::free(memory); });

}  // namespace

std::vector<std::uint8_t> EncodeJpeg(const RgbImage& image, int quality) {
    if (image.width < 1 || image.height < 1 || std::max(image.width, image.height) > JPEG_MAX_DIMENSION) {
        return {};
    }
    jpeg_error_mgr errors = {};
    jpeg_compress_struct jpeg = {};
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    unsigned char* memory = nullptr;
    unsigned long size = 0;  // NOLINT(google-runtime-int): libjpeg's type
    jpeg_mem_dest(&jpeg, &memory, &size);

    jpeg.image_width = static_cast<JDIMENSION>(image.width);
    jpeg.image_height = static_cast<JDIMENSION>(image.height);
    jpeg.input_components = 3;
    jpeg.in_color_space = JCS_RGB;
    jpeg_set_defaults(&jpeg);
    jpeg_set_quality(&jpeg, quality, TRUE);
    jpeg.write_JFIF_header = FALSE;  // an Exif file's first segment is APP1
    jpeg_start_compress(&jpeg, TRUE);
    std::vector<std::uint8_t> row(3 * static_cast<std::size_t>(image.width));
    while (jpeg.next_scanline < jpeg.image_height) {
        const std::size_t start = jpeg.next_scanline * row.size();
        std::copy_n(image.samples.begin() + static_cast<std::ptrdiff_t>(start), row.size(), row.begin());
        std::array<JSAMPROW, 1> rows = {row.data()};
        jpeg_write_scanlines(&jpeg, rows.data(), 1);
    }
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);

    const std::unique_ptr<unsigned char, FreeMemory> owned(memory);
    const std::span<const std::uint8_t> bytes(owned.get(), size);
    return {bytes.begin(), bytes.end()};
}

}  // namespace samples
