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

/// Of a file of `size` bytes that begins with `head`; nothing when its directories do not lie in that.
std::optional<DngKind> KindByDirectories(std::span<const std::uint8_t> head, std::uint64_t size) {
    const ByteView view(head);
    const auto first = FirstDirectory(view);
    const auto ifd0 = first ? ReadDirectory(view, *first) : std::nullopt;
    if (!ifd0) {
        return std::nullopt;
    }
    if (!Contains(*ifd0, tag::kMake, kCameraMake) || !Contains(*ifd0, tag::kModel, kCameraModel)) {
        return DngKind::kOther;
    }
    const auto raw_ifd = ReadLinked(view, *ifd0, tag::kSubIFDs);
    if (!raw_ifd || raw_ifd->Number(tag::kBitsPerSample) != kCameraBits) {
        return std::nullopt;
    }
    const std::uint64_t width = raw_ifd->Number(tag::kImageWidth).value_or(0);
    const std::uint64_t height = raw_ifd->Number(tag::kImageLength).value_or(0);
    const std::uint64_t offset = raw_ifd->Number(tag::kStripOffsets).value_or(0);
    return offset <= size && width * height <= size - offset ? DngKind::kOfChangedLength : DngKind::kCut;
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
    std::optional<DngKind> kind;
    for (const std::size_t limit : {kHeadSize, kLongestFile}) {
        const auto head = kind ? std::nullopt : ReadHead(path, limit);
        kind = head ? KindByDirectories(*head, size) : kind;
    }
    return kind.value_or(size < kCameraDngSize ? DngKind::kCut : DngKind::kOther);
}
