// SPDX-License-Identifier: MIT
#include "batch/complete_dng.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <span>
#include <system_error>

#include "base/byte_view.h"
#include "system/input_file.h"
#include "system/system_path.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace {

constexpr std::uint32_t kPairWidth = 3968;
constexpr std::uint32_t kPairHeight = 2646;
constexpr std::uint64_t kBytesPerPixel = 2;
constexpr std::uint32_t kLittleEndianTiff = 0x002A4949;  ///< "II" and the number of the format
constexpr ByteOrder kLittle = ByteOrder::kLittleEndian;

using SingleValues = std::map<std::uint16_t, std::uint32_t>;

/// The KiB at an offset. It holds what is looked for of an IFD: entries stand in the order of their tags.
class Window {
  public:
    Window(std::ifstream& stream, std::uint64_t offset) {
        stream.clear();
        stream.seekg(static_cast<std::streamoff>(offset));
        stream.read(reinterpret_cast<char*>(bytes_.data()), static_cast<std::streamsize>(bytes_.size()));
        length_ = static_cast<std::size_t>(stream.gcount());
    }

    ByteView view() const { return ByteView(std::span(bytes_).first(length_)); }

  private:
    std::array<std::uint8_t, 1024> bytes_ = {};
    std::size_t length_ = 0;
};

/// The single values of the IFD's entries; nothing when it has none, or when they are cut.
std::optional<SingleValues> ReadIfd(std::ifstream& stream, std::uint64_t offset) {
    constexpr std::uint64_t count_bytes = 2;
    constexpr std::uint64_t entry_bytes = 12;
    constexpr std::uint64_t value_offset = 8;
    const Window window(stream, offset);
    const ByteView view = window.view();
    SingleValues values;
    const auto count = view.Get<std::uint16_t>(0, kLittle);
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::uint64_t entry = count_bytes + i * entry_bytes;
        const auto tag = view.Get<std::uint16_t>(entry, kLittle);
        if (!view.Holds(entry, entry_bytes)) {
            return std::nullopt;
        }
        if (tag > tag::kSubIFDs) {
            break;
        }
        if (view.Get<std::uint32_t>(entry + 4, kLittle) == 1) {
            const bool is_short = view.Get<std::uint16_t>(entry + 2, kLittle) == tiff::kShort;
            values[tag] = is_short ? view.Get<std::uint16_t>(entry + value_offset, kLittle)
                                   : view.Get<std::uint32_t>(entry + value_offset, kLittle);
        }
    }
    return values.empty() ? std::nullopt : std::optional(values);
}

std::uint64_t Value(const SingleValues& values, std::uint16_t tag) {
    const auto found = values.find(tag);
    return found != values.end() ? found->second : 0;
}

std::string ProblemOfImage(const SingleValues& values, std::uint64_t size, bool is_pair) {
    const std::uint64_t width = Value(values, tag::kImageWidth);
    const std::uint64_t height = Value(values, tag::kImageLength);
    const std::uint64_t offset = Value(values, tag::kStripOffsets);
    const std::uint64_t length = Value(values, tag::kStripByteCounts);
    const bool is_whole = offset > 0 && length > 0 && length == width * height * kBytesPerPixel;
    const bool has_size = !is_pair || (width == kPairWidth && height == kPairHeight);
    if (!is_whole || !has_size) {
        return kOtherDng;
    }
    return offset + length <= size ? "" : "is not complete";
}

}  // namespace

std::string ProblemOfDng(const std::string& path, bool is_pair) {
    std::error_code unknown;
    if (!std::filesystem::is_regular_file(system_path::ToSystem(path), unknown)) {
        return "is not a file";
    }
    InputFile file;
    if (!file.Open(path)) {
        return "cannot be read";
    }
    const Window head(file.stream(), 0);
    constexpr std::uint64_t ifd_offset = 4;
    if (head.view().Get<std::uint32_t>(0, kLittle) != kLittleEndianTiff ||
        !head.view().Holds(ifd_offset, 4)) {
        return "is not a DNG";
    }
    auto values = ReadIfd(file.stream(), head.view().Get<std::uint32_t>(ifd_offset, kLittle));
    if (values && values->contains(tag::kSubIFDs)) {
        values = ReadIfd(file.stream(), values->at(tag::kSubIFDs));
    }
    return values ? ProblemOfImage(*values, file.size(), is_pair) : "is not complete";
}
