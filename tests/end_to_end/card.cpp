// SPDX-License-Identifier: MIT
#include "tests/end_to_end/card.h"

#include <filesystem>

#include "samples/camera_jpeg.h"
#include "samples/sensor_dump.h"
#include "tests/support/test_pair.h"
#include "tiff/tags.h"

namespace end_to_end {

void Card::AddPair(const std::string& base, const samples::Shot& shot) const {
    support::WritePair(folder(), base, shot);
}

void Card::AddLinkedPair(const std::string& base, const std::string& other) const {
    support::WriteFile(*this / (base + ".JPG"), samples::CameraJpeg(samples::CameraExif({})));
    std::filesystem::create_symlink(other + ".RAW", *this / (base + ".RAW"));
}

void Card::AddDarkFrame(const std::string& base, std::uint16_t level) const {
    support::WriteFile(*this / (base + ".BIA"), samples::DumpBytes(samples::FlatWords(level)));
}

support::Outcome Card::Run(const std::vector<std::string>& arguments) const {
    return support::RunProgram(VELMARCON_PROGRAM, arguments, {.folder = folder()});
}

support::TiffFile Card::Dng(const std::string& base) const {
    return support::TiffFile(support::ReadFile(*this / (base + ".DNG")));
}

std::vector<std::string> Card::ListingOrder() const {
    std::vector<std::string> bases;
    for (const auto& entry : std::filesystem::directory_iterator(folder())) {
        if (entry.path().extension() == ".RAW") {
            bases.push_back(entry.path().stem().string());
        }
    }
    return bases;
}

Contents ContentsOf(const std::string& folder) {
    Contents contents;
    for (const std::string& name : support::Names(folder)) {
        const std::string path = (std::filesystem::path(folder) / name).string();
        contents[name] =
            std::filesystem::exists(path) ? support::ReadFile(path) : std::vector<std::uint8_t>();
    }
    return contents;
}

support::TiffIFD RawIFD(const support::TiffFile& file) {
    auto ifd0 = file.FirstIFD();
    return ifd0.Has(tag::kSubIFDs) ? file.ReadIFD(ifd0.At(tag::kSubIFDs).Number()) : ifd0;
}

std::vector<std::uint16_t> RawPixels(const support::TiffFile& file) {
    const auto raw = RawIFD(file);
    const auto bytes =
        file.Bytes(raw.At(tag::kStripOffsets).Number(), raw.At(tag::kStripByteCounts).Number());
    std::vector<std::uint16_t> pixels;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        pixels.push_back(static_cast<std::uint16_t>(bytes[i] + bytes[i + 1] * 256));
    }
    return pixels;
}

}  // namespace end_to_end
