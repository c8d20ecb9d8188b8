// SPDX-License-Identifier: MIT
#include "batch/dng_kind.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <system_error>
#include <vector>

#include "app/input_discovery.h"
#include "base/byte_view.h"
#include "batch/file_facts.h"
#include "batch/proof/file_head.h"
#include "batch/proof/tiff_directory.h"
#include "system/system_path.h"
#include "tiff/tags.h"

namespace {

constexpr const char* kCameraMake = "Leica Camera AG";
constexpr const char* kCameraModel = "M8";
constexpr std::uint32_t kCameraBits = 8;

/// The pixels alone of a DNG that this program writes take more.
constexpr std::uint64_t kShortestWritten = 20'000'000;

bool Contains(const TiffDirectory& directory, std::uint16_t tag, const char* text) {
    return directory.Text(tag).find(text) != std::string::npos;
}

/// Of a file in which nothing says that it is the camera's.
DngKind KindByLength(std::uint64_t size) {
    return size < kCameraDngSize ? DngKind::kCut : DngKind::kOther;
}

/// Of a file of `size` bytes that begins with `start`; nothing when its directories do not lie in that.
std::optional<DngKind> KindByDirectories(std::span<const std::uint8_t> start, std::uint64_t size) {
    const ByteView view(start);
    const auto first = FirstDirectory(view);
    if (!first) {
        return KindByLength(size);
    }
    const auto ifd0 = ReadDirectory(view, *first);
    if (!ifd0) {
        return std::nullopt;
    }
    if (!Contains(*ifd0, tag::kMake, kCameraMake) || !Contains(*ifd0, tag::kModel, kCameraModel)) {
        return DngKind::kOther;
    }
    const auto raw_ifd = ReadLinked(view, *ifd0, tag::kSubIFDs);
    if (!raw_ifd) {
        return std::nullopt;
    }
    if (raw_ifd->Number(tag::kBitsPerSample) != kCameraBits) {
        return KindByLength(size);
    }
    const std::uint64_t width = raw_ifd->Number(tag::kImageWidth).value_or(0);
    const std::uint64_t height = raw_ifd->Number(tag::kImageLength).value_or(0);
    const std::uint64_t offset = raw_ifd->Number(tag::kStripOffsets).value_or(0);
    return offset <= size && width * height <= size - offset ? DngKind::kOfChangedLength : DngKind::kCut;
}

/// The same, by no more than `limit` bytes of the file.
std::optional<DngKind> KindByStart(const std::string& path, std::uint64_t size, std::size_t limit) {
    const auto start = ReadHead(path, limit);
    return start ? KindByDirectories(*start, size) : std::nullopt;
}

}  // namespace

DngKind KindOfDng(const std::string& path) {
    const auto state = StateAt(path);
    const auto size = state ? static_cast<std::uint64_t>(state->size) : 0;
    std::error_code unknown;
    if (size == kCameraDngSize) {
        return DngKind::kCameras;
    }
    if (!state || size >= kShortestWritten ||
        !std::filesystem::is_regular_file(system_path::ToSystem(path), unknown)) {
        return DngKind::kOther;
    }
    auto kind = KindByStart(path, size, kHeadSize);
    if (!kind) {
        kind = KindByStart(path, size, kLongestFile);
    }
    return kind.value_or(KindByLength(size));
}
