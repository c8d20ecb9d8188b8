// SPDX-License-Identifier: MIT
// Lays out and writes a DNG file: a little-endian TIFF file (TIFF 6.0) that
// consists of a header, the IFDs, each followed by its values, and one uncompressed strip per image.
#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <system_error>
#include <vector>

#include "base/byte_order.h"
#include "base/pixel.h"
#include "dng/dnglib.h"
#include "dng/ifd.h"
#include "dng/tag_tree.h"
#include "dng/tag_values.h"
#include "errors/not_written.h"
#include "errors/step_lines.h"
#include "input/preview.h"
#include "input/read_input_data.h"
#include "system/path_names.h"
#include "system/replacement_file.h"
#include "system/system_error.h"
#include "tiff/entry.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace {

/// "II", the magic number 42, and the offset of IFD0, which directly follows this header.
constexpr std::array<std::uint8_t, tiff::kHeaderSize> kHeader = {
    'I', 'I', tiff::kMagic, 0, tiff::kHeaderSize, 0, 0, 0};

constexpr std::uint64_t kFarthestOffset = std::numeric_limits<std::uint32_t>::max();

bool FitsInEntry(const IFDTag& entry) {
    return tiff::FitsInEntry(entry.length);
}

/// The space for a value outside its entry: values and IFDs start at even offsets.
std::uint64_t PaddedLength(const IFDTag& entry) {
    return std::uint64_t{entry.length} + entry.length % 2;
}

/// Gives the values of an IFD at `position` their offsets. Returns the position after the last value. Offsets
/// beyond 32 bits are truncated here; DoFileLayout then rejects the whole layout.
std::uint64_t LayOutIFD(IFD& ifd, std::uint64_t position) {
    position += tiff::IFDSize(ifd.size());
    for (auto& [tag, entry] : ifd) {
        if (!FitsInEntry(entry)) {
            entry.position = static_cast<std::uint32_t>(position);
            position += PaddedLength(entry);
        }
    }
    return position;
}

std::span<const char> AsChars(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// The bytes of an IFD and its values, which must have been laid out, for a file position of `start`.
std::vector<std::uint8_t> TreeBytes(const IFD& ifd, std::uint64_t start) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(static_cast<std::size_t>(tiff::IFDSize(ifd.size())));
    byte_order::AppendLittle(bytes, static_cast<std::uint16_t>(ifd.size()));
    for (const auto& [tag, entry] : ifd) {
        byte_order::AppendLittle(bytes, entry.tag);
        byte_order::AppendLittle(bytes, entry.type);
        byte_order::AppendLittle(bytes, entry.count);
        if (FitsInEntry(entry)) {
            bytes.insert(bytes.end(), entry.value.begin(), entry.value.end());
            bytes.resize(bytes.size() + tiff::kValueFieldSize - entry.length);
        } else {
            byte_order::AppendLittle(bytes, entry.position);
        }
    }
    constexpr std::uint32_t no_next_ifd = 0;
    byte_order::AppendLittle(bytes, no_next_ifd);
    for (const auto& [tag, entry] : ifd) {
        if (!FitsInEntry(entry)) {
            // DoFileLayout leaves no gaps.
            const std::uint64_t position = std::max<std::uint64_t>(entry.position, start + bytes.size());
            bytes.resize(static_cast<std::size_t>(position - start));
            bytes.insert(bytes.end(), entry.value.begin(), entry.value.end());
            bytes.resize(bytes.size() + entry.length % 2);
        }
    }
    return bytes;
}

/// Prints why the file was not written. The run goes on with the next file.
void ReportUnwritten(const std::string& path, std::error_code error) {
    PrintNotWritten(path, output_names::kDng, system_error::Text(error));
}

/// Adds every tag that the layout fills in, with one value: a tag that is missing, or has more values in a
/// camera DNG, would change size during the layout and shift everything after it.
void SetPlaceholders(TagTree& tree, bool preview) {
    ifd::Add(tree.ifd0, tag::kExifIFD, tag_values::kPlaceholder);
    ifd::Add(tree.ifd0, tag::kStripOffsets, tag_values::kPlaceholder);
    if (preview) {
        ifd::Add(tree.ifd0, tag::kSubIFDs, tag_values::kPlaceholder);
        ifd::Add(tree.sub_ifd, tag::kStripOffsets, tag_values::kPlaceholder);
    }
}

/// The bytes of the header and the IFDs, which must have been laid out.
std::vector<std::uint8_t> HeadBytes(const TagTree& tree, bool preview) {
    std::vector<std::uint8_t> bytes(kHeader.begin(), kHeader.end());
    const auto append = [&](const IFD& ifd) {
        const auto ifd_bytes = TreeBytes(ifd, bytes.size());
        bytes.insert(bytes.end(), ifd_bytes.begin(), ifd_bytes.end());
    };
    append(tree.ifd0);
    if (preview) {
        append(tree.sub_ifd);
    }
    append(tree.exif_ifd);
    return bytes;
}

/// Starts the file. A size of 0 means that the layout does not fit into 32 bits.
std::error_code OpenOutput(const std::string& path, std::uint64_t size, bool keep_existing,
                           ReplacementFile& file) {
    using Existing = ReplacementFile::Existing;
    return size == 0 ? std::make_error_code(std::errc::file_too_large)
                     : file.Open(path, keep_existing ? Existing::kKeep : Existing::kReplace);
}

struct Images {
    std::optional<std::span<const char>> preview;
    std::span<const char> raw;
};

/// Writes header, IFDs and images. Stops at the first failure, which `file` remembers.
void WriteBlocks(const TagTree& tree, const Images& images, bool verbose, ReplacementFile& file) {
    step_lines::Begin(verbose, "Writing DNG header");
    const auto head = HeadBytes(tree, images.preview.has_value());
    file.Write(AsChars(head));
    if (!file.IsGood()) {
        return;
    }
    step_lines::End(verbose);
    step_lines::Begin(verbose, "Writing image data");
    if (images.preview) {
        file.Write(*images.preview);
    }
    file.Write(images.raw);
}

}  // namespace

unsigned int DNGlib::DoFileLayout(int rawBytes) {
    SetPlaceholders(tree_, preview_);
    std::uint64_t position = LayOutIFD(tree_.ifd0, tiff::kHeaderSize);
    if (preview_) {
        ifd::Add(tree_.ifd0, tag::kSubIFDs, static_cast<std::uint32_t>(position));
        position = LayOutIFD(tree_.sub_ifd, position);
    }
    ifd::Add(tree_.ifd0, tag::kExifIFD, static_cast<std::uint32_t>(position));
    position = LayOutIFD(tree_.exif_ifd, position);

    if (preview_) {
        ifd::Add(tree_.ifd0, tag::kStripOffsets, static_cast<std::uint32_t>(position));
        position += PreviewSampler::kSize;
    }
    ifd::Add(preview_ ? tree_.sub_ifd : tree_.ifd0, tag::kStripOffsets, static_cast<std::uint32_t>(position));
    position += static_cast<std::uint32_t>(std::max(rawBytes, 0));
    return position <= kFarthestOffset ? static_cast<std::uint32_t>(position) : 0;
}

int DNGlib::writeSingleTree(std::ofstream& file, IFD* ifd) {
    const auto start = std::streamoff(file.tellp());
    if (start >= 0) {
        const auto bytes = TreeBytes(*ifd, static_cast<std::uint64_t>(start));
        file.write(AsChars(bytes).data(), static_cast<std::streamsize>(bytes.size()));
    }
    return 0;
}

int DNGlib::writeDNGTree(const std::string& prefix, const std::string& sourceName, const char* rawData,
                         const char* previewData, int rawBytes, int previewBytes) {
    const std::uint64_t size = DoFileLayout(rawBytes);
    const std::string path = prefix + path_names::WithOtherExtension(sourceName, path_names::kDngExtension);
    ReplacementFile file;
    if (const std::error_code error = OpenOutput(path, size, keep_existing_, file)) {
        ReportUnwritten(path, error);
        return 0;
    }
    Images images = {std::nullopt, {rawData, static_cast<std::size_t>(rawBytes)}};
    if (preview_) {
        images.preview = {previewData, static_cast<std::size_t>(previewBytes)};
    }
    WriteBlocks(tree_, images, verbose_, file);
    const std::error_code error = file.Commit(size);
    step_lines::End(verbose_, error ? "" : step_lines::kDone);
    if (error) {
        ReportUnwritten(path, error);
    }
    return 0;
}

int DNGlib::writeDNGTree(const std::string& prefix) {
    const int raw_bytes = input_->ImageSize * static_cast<int>(sizeof(Pixel));
    return writeDNGTree(prefix, input_->RawFileName, reinterpret_cast<const char*>(input_->ImageData.data()),
                        reinterpret_cast<const char*>(input_->PreviewData.data()), raw_bytes,
                        PreviewSampler::kSize);
}

int DNGlib::writeDNGTree() {
    return writeDNGTree(input_->Folder);
}
