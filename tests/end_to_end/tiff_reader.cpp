// SPDX-License-Identifier: MIT
#include "tests/end_to_end/tiff_reader.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <string_view>

namespace end_to_end {

namespace {

/// A global, because libtiff's handlers are plain functions.
std::vector<std::string>& AllComplaints() {
    static std::vector<std::string> lines;
    return lines;
}

[[gnu::format(printf, 2, 0)]] void KeepComplaint(const char* module, const char* format, va_list arguments) {
    std::array<char, 500> text = {};
    std::vsnprintf(text.data(), text.size(), format, arguments);
    AllComplaints().push_back(std::string(module) + ": " + text.data());
}

}  // namespace

TiffReader::TiffReader(const std::string& path) : file_(nullptr, TIFFClose) {
    AllComplaints().clear();
    TIFFSetErrorHandler(KeepComplaint);
    TIFFSetWarningHandler(KeepComplaint);
    // c: libtiff must not divide one large strip into many small ones.
    file_.reset(TIFFOpen(path.c_str(), "rc"));
}

std::vector<std::string> TiffReader::Complaints() {
    std::vector<std::string> lines = AllComplaints();
    std::erase_if(lines, [](const std::string& line) {
        constexpr std::array<std::string_view, 6> unknown = {"34859", "36867", "37390",
                                                             "37391", "37392", "37398"};
        return std::ranges::any_of(unknown, [&](std::string_view tag) {
            return line.find("Unknown field with tag " + std::string(tag) + " ") != std::string::npos;
        });
    });
    return lines;
}

void TiffReader::GoToSubIFD() const {
    std::uint16_t count = 0;
    const std::uint64_t* offsets = nullptr;
    ASSERT_EQ(TIFFGetField(file(), TIFFTAG_SUBIFD, &count, &offsets), 1);
    ASSERT_EQ(count, 1);
    ASSERT_EQ(TIFFSetSubDirectory(file(), *offsets), 1);
}

ImageKind TiffReader::Kind() const {
    return {Field<std::uint32_t>(TIFFTAG_IMAGEWIDTH), Field<std::uint32_t>(TIFFTAG_IMAGELENGTH),
            Field<std::uint16_t>(TIFFTAG_BITSPERSAMPLE), Field<std::uint16_t>(TIFFTAG_SAMPLESPERPIXEL),
            Field<std::uint16_t>(TIFFTAG_PHOTOMETRIC)};
}

}  // namespace end_to_end
