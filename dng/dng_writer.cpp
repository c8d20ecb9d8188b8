// SPDX-License-Identifier: MIT
// Layout and writing of a DNG file: a little-endian TIFF file (TIFF 6.0) of header, IFDs with their values
// behind them, and one uncompressed strip an image.
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "base/byte_order.h"
#include "dng/dnglib.h"
#include "dng/tag_values.h"
#include "input/preview.h"
#include "input/read_input_data.h"
#include "system/file_system.h"
#include "system/replacement_file.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace {

/// "II", the magic number 42, and the offset of IFD0: right behind this header.
constexpr std::array<std::uint8_t, tiff::kHeaderSize> kHeader = {
    'I', 'I', tiff::kMagic, 0, tiff::kHeaderSize, 0, 0, 0};

constexpr std::uint64_t kFarthestOffset = std::numeric_limits<std::uint32_t>::max();

bool StandsInEntry(const DNGlib::IFDTag& entry) {
    return entry.length <= tiff::kValueFieldSize;
}

/// Room of an out-of-line value: values and IFDs start at even offsets.
std::uint64_t PaddedLength(const DNGlib::IFDTag& entry) {
    return std::uint64_t{entry.length} + entry.length % 2;
}

std::uint64_t TableSize(const DNGlib::IFD& ifd) {
    return tiff::kCountSize + std::uint64_t{tiff::kEntrySize} * ifd.size() + tiff::kLinkSize;
}

/// Gives the values of an IFD at `position` their offsets. Returns the position behind the last one. An
/// offset beyond 32 bits is cut; the layout as a whole is refused then.
std::uint64_t LayOutIFD(DNGlib::IFD& ifd, std::uint64_t position) {
    position += TableSize(ifd);
    for (auto& [tag, entry] : ifd) {
        if (!StandsInEntry(entry)) {
            entry.position = static_cast<std::uint32_t>(position);
            position += PaddedLength(entry);
        }
    }
    return position;
}

std::span<const char> AsChars(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// An IFD and its values, laid out before, as they stand in a file from `start` on.
std::vector<std::uint8_t> TreeBytes(const DNGlib::IFD& ifd, std::uint64_t start) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(static_cast<std::size_t>(TableSize(ifd)));
    byte_order::AppendLittle(bytes, static_cast<std::uint16_t>(ifd.size()));
    for (const auto& [tag, entry] : ifd) {
        byte_order::AppendLittle(bytes, entry.tag);
        byte_order::AppendLittle(bytes, entry.type);
        byte_order::AppendLittle(bytes, entry.count);
        if (StandsInEntry(entry)) {
            bytes.insert(bytes.end(), entry.value.begin(), entry.value.end());
            bytes.resize(bytes.size() + tiff::kValueFieldSize - entry.length);
        } else {
            byte_order::AppendLittle(bytes, entry.position);
        }
    }
    constexpr std::uint32_t no_next_ifd = 0;
    byte_order::AppendLittle(bytes, no_next_ifd);
    for (const auto& [tag, entry] : ifd) {
        if (!StandsInEntry(entry)) {
            // DoFileLayout leaves no gaps.
            const std::uint64_t position = std::max<std::uint64_t>(entry.position, start + bytes.size());
            bytes.resize(static_cast<std::size_t>(position - start));
            bytes.insert(bytes.end(), entry.value.begin(), entry.value.end());
            bytes.resize(bytes.size() + entry.length % 2);
        }
    }
    return bytes;
}

/// The name up to and including its last "."; empty when it has none.
std::string UpToExtension(const std::string& name) {
    return name.substr(0, name.rfind('.') + 1);
}

/// A failure ends the run's work on this file, not the run.
void ReportUnwritten(const std::string& path, int error) {
    std::printf("%s: DNG not written: %s\n", path.c_str(), file_system::ErrorText(error));
}

}  // namespace

unsigned int DNGlib::DoFileLayout(int rawBytes) {
    SetPlaceholders();
    std::uint64_t position = LayOutIFD(ifd0_, tiff::kHeaderSize);
    if (preview_) {
        AddIFDTag(&ifd0_, tag::kSubIFDs, static_cast<std::uint32_t>(position));
        position = LayOutIFD(sub_ifd_, position);
    }
    AddIFDTag(&ifd0_, tag::kExifIFD, static_cast<std::uint32_t>(position));
    position = LayOutIFD(exif_ifd_, position);

    if (preview_) {
        AddIFDTag(&ifd0_, tag::kStripOffsets, static_cast<std::uint32_t>(position));
        position += PreviewSampler::kSize;
    }
    AddIFDTag(preview_ ? &sub_ifd_ : &ifd0_, tag::kStripOffsets, static_cast<std::uint32_t>(position));
    position += static_cast<std::uint32_t>(std::max(rawBytes, 0));
    return position <= kFarthestOffset ? static_cast<std::uint32_t>(position) : 0;
}

/// Makes sure that the tags which the layout fills in stand in their entries already: one that a file brought
/// along with more values, or lacks, would shift what comes behind it.
void DNGlib::SetPlaceholders() {
    AddIFDTag(&ifd0_, tag::kExifIFD, tag_values::kPlaceholder);
    AddIFDTag(&ifd0_, tag::kStripOffsets, tag_values::kPlaceholder);
    if (preview_) {
        AddIFDTag(&ifd0_, tag::kSubIFDs, tag_values::kPlaceholder);
        AddIFDTag(&sub_ifd_, tag::kStripOffsets, tag_values::kPlaceholder);
    }
}

int DNGlib::writeSingleTree(std::ofstream& file, IFD* ifd) {
    const auto start = std::streamoff(file.tellp());
    if (start >= 0) {
        const auto bytes = TreeBytes(*ifd, static_cast<std::uint64_t>(start));
        file.write(AsChars(bytes).data(), static_cast<std::streamsize>(bytes.size()));
    }
    return 0;
}

/// Header and IFDs, laid out before.
std::vector<std::uint8_t> DNGlib::HeadBytes() const {
    std::vector<std::uint8_t> bytes(kHeader.begin(), kHeader.end());
    const auto append = [&](const IFD& ifd) {
        const auto tree = TreeBytes(ifd, bytes.size());
        bytes.insert(bytes.end(), tree.begin(), tree.end());
    };
    append(ifd0_);
    if (preview_) {
        append(sub_ifd_);
    }
    append(exif_ifd_);
    return bytes;
}

/// Starts the file. Returns 0 or the system's error number. A layout of no size does not fit into a file.
int DNGlib::OpenOutput(const std::string& path, std::uint64_t size, ReplacementFile& file) const {
    using Existing = ReplacementFile::Existing;
    return size == 0 ? EFBIG : file.Open(path, keep_existing_ ? Existing::kKeep : Existing::kReplace);
}

int DNGlib::writeDNGTree(const std::string& prefix, const std::string& sourceName, const char* rawData,
                         const char* previewData, int rawBytes, int previewBytes) {
    const std::uint64_t size = DoFileLayout(rawBytes);
    const std::string path = prefix + UpToExtension(sourceName) + "DNG";
    ReplacementFile file;
    if (const int error = OpenOutput(path, size, file); error != 0) {
        ReportUnwritten(path, error);
        return 0;
    }
    WriteBlocks(file, {rawData, static_cast<std::size_t>(rawBytes)},
                {previewData, static_cast<std::size_t>(previewBytes)});
    const int error = file.Commit(size);
    if (verbose_) {
        std::printf(error == 0 ? "Done!\n" : "\n");
    }
    if (error != 0) {
        ReportUnwritten(path, error);
    }
    return 0;
}

void DNGlib::WriteBlocks(ReplacementFile& file, std::span<const char> raw,
                         std::span<const char> preview) const {
    if (verbose_) {
        std::printf("Writing DNG header...");
    }
    const auto head = HeadBytes();
    if (!file.Write(AsChars(head))) {
        return;
    }
    if (verbose_) {
        std::printf("Done!\nWriting image data...");
    }
    if (preview_) {
        file.Write(preview);
    }
    file.Write(raw);
}

int DNGlib::writeDNGTree(const std::string& prefix) {
    const int raw_bytes = input_->ImageSize * static_cast<int>(sizeof(std::uint16_t));
    return writeDNGTree(prefix, input_->RawFileName, reinterpret_cast<const char*>(input_->ImageData.data()),
                        reinterpret_cast<const char*>(input_->PreviewData.data()), raw_bytes,
                        PreviewSampler::kSize);
}

int DNGlib::writeDNGTree() {
    return writeDNGTree(input_->Folder);
}
