// SPDX-License-Identifier: MIT
// What libtiff makes of the DNGs that the program writes.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <tiffio.h>

#include "samples/sample_databases.h"
#include "tests/end_to_end/card.h"
#include "tests/end_to_end/write_dng.h"
#include "tests/support/test_pair.h"

namespace end_to_end {

namespace {

/// libtiff's handlers are functions without an object.
std::vector<std::string>& Complaints() {
    static std::vector<std::string> lines;
    return lines;
}

void KeepComplaint(const char* module, const char* format, va_list arguments) {
    std::array<char, 500> text = {};
    std::vsnprintf(text.data(), text.size(), format, arguments);
    Complaints().push_back(std::string(module) + ": " + text.data());
}

/// The complaints other than that a tag is unknown to libtiff. In IFD0 it does not know the TIFF/EP tags
/// SelfTimerMode (34859), DateTimeOriginal (36867), FocalPlaneX/YResolution and ...ResolutionUnit (37390 to
/// 37392) and TIFF/EPStandardID (37398).
std::vector<std::string> RealComplaints() {
    std::vector<std::string> lines = Complaints();
    std::erase_if(lines, [](const std::string& line) {
        constexpr std::array<std::string_view, 6> unknown = {"34859", "36867", "37390",
                                                             "37391", "37392", "37398"};
        return std::ranges::any_of(unknown, [&](std::string_view tag) {
            return line.find("Unknown field with tag " + std::string(tag) + " ") != std::string::npos;
        });
    });
    return lines;
}

/// Size and kind of an image, as the common tags state it.
struct ImageKind {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint16_t bits = 0;
    std::uint16_t samples = 0;
    std::uint16_t photometric = 0;

    bool operator==(const ImageKind&) const = default;
};

constexpr ImageKind kRawImage = {3968, 2646, 16, 1, PHOTOMETRIC_CFA};
constexpr ImageKind kPreview = {320, 240, 8, 3, PHOTOMETRIC_RGB};

/// Converts the test pattern and opens the result; the pair's files are there as long as the test.
class LibTIFF : public testing::Test {
  protected:
    LibTIFF() {
        Complaints().clear();
        TIFFSetErrorHandler(KeepComplaint);
        TIFFSetWarningHandler(KeepComplaint);
    }

    void Open(const std::vector<std::string>& options) {
        support::WritePair(folder_.path().string(), kBase);
        support::WriteFile(folder_ / "lensdb.ini", samples::LensDatabase());
        // c: libtiff is not to make many small strips of one large.
        file_.reset(TIFFOpen(WriteDng(folder_, options).c_str(), "rc"));
        ASSERT_NE(file_, nullptr);
    }

    TIFF* file() const { return file_.get(); }

    template <typename Value>
    Value Field(std::uint32_t tag) const {
        Value value = {};
        EXPECT_EQ(TIFFGetField(file(), tag, &value), 1) << tag;
        return value;
    }

    ImageKind Kind() const {
        return {Field<std::uint32_t>(TIFFTAG_IMAGEWIDTH), Field<std::uint32_t>(TIFFTAG_IMAGELENGTH),
                Field<std::uint16_t>(TIFFTAG_BITSPERSAMPLE), Field<std::uint16_t>(TIFFTAG_SAMPLESPERPIXEL),
                Field<std::uint16_t>(TIFFTAG_PHOTOMETRIC)};
    }

    /// The samples of the only strip.
    template <typename Sample>
    std::vector<Sample> Strip() const {
        EXPECT_EQ(TIFFNumberOfStrips(file()), 1U);
        const tmsize_t size = TIFFStripSize(file());
        std::vector<Sample> samples(static_cast<std::size_t>(size) / sizeof(Sample));
        EXPECT_EQ(TIFFReadEncodedStrip(file(), 0, samples.data(), size), size);
        return samples;
    }

  private:
    support::TempFolder folder_;
    std::unique_ptr<TIFF, decltype([](TIFF* file) { TIFFClose(file); })> file_;
};

/// The preview shows single pixels of even rows and odd columns through a square-root curve.
std::vector<std::uint8_t> ExpectedPreview() {
    constexpr float kColumnStep = 3968 / 320.0F;
    constexpr float kRowStep = 2646 / 240.0F;
    std::vector<std::uint8_t> bytes;
    for (int row = 0; row < 240; ++row) {
        const float y = static_cast<float>(row) * kRowStep;
        const int below = static_cast<int>(std::floor(y));
        const int above = static_cast<int>(std::ceil(y));
        const int even = below % 2 == 0 ? below : above + above % 2;
        for (int column = 0; column < 320; ++column) {
            const float x = static_cast<float>(column) * kColumnStep;
            const int left = static_cast<int>(std::floor(x));
            const int right = static_cast<int>(std::ceil(x));
            const int odd = left % 2 == 1 ? left : right + (right + 1) % 2;
            const double grey = std::min(std::sqrt(support::TestPixel(odd, even) * 4.0), 255.0);
            bytes.insert(bytes.end(), 3, static_cast<std::uint8_t>(std::lround(grey)));
        }
    }
    return bytes;
}

TEST_F(LibTIFF, ReadsTheRawImageOfIFD0) {
    Open({});
    EXPECT_EQ(Kind(), kRawImage);
    EXPECT_TRUE(Strip<std::uint16_t>() == ExpectedPixels(support::TestPixel));
    EXPECT_EQ(TIFFNumberOfDirectories(file()), 1);
    EXPECT_EQ(RealComplaints(), std::vector<std::string>());
}

TEST_F(LibTIFF, ReadsPreviewAndRawImageOfAFileWithBoth) {
    Open({"-p", "-b"});
    EXPECT_EQ(Kind(), kPreview);
    EXPECT_TRUE(Strip<std::uint8_t>() == ExpectedPreview());

    std::uint16_t count = 0;
    const std::uint64_t* offsets = nullptr;
    ASSERT_EQ(TIFFGetField(file(), TIFFTAG_SUBIFD, &count, &offsets), 1);
    ASSERT_EQ(count, 1);
    ASSERT_EQ(TIFFSetSubDirectory(file(), *offsets), 1);
    EXPECT_EQ(Kind(), kRawImage);
    EXPECT_TRUE(Strip<std::uint16_t>() == ExpectedPixels(support::TestPixel));
    EXPECT_EQ(TIFFLastDirectory(file()), 1);
    EXPECT_EQ(RealComplaints(), std::vector<std::string>());
}

TEST_F(LibTIFF, ReadsTheExifIFD) {
    Open({"-p", "-l"});
    const auto offset = Field<std::uint64_t>(TIFFTAG_EXIFIFD);
    ASSERT_EQ(TIFFReadEXIFDirectory(file(), offset), 1);
    EXPECT_EQ(Field<std::uint16_t>(EXIFTAG_FOCALLENGTHIN35MMFILM), 67);
    EXPECT_STREQ(Field<const char*>(EXIFTAG_DATETIMEDIGITIZED), "2007:08:02 22:13:49");
    EXPECT_STREQ(Field<const char*>(EXIFTAG_LENSMAKE), "Leica");
    EXPECT_STREQ(Field<const char*>(EXIFTAG_LENSMODEL), "Summicron-M 50mm f/2");
    EXPECT_STREQ(Field<const char*>(EXIFTAG_LENSSERIALNUMBER), "1234567");
    EXPECT_EQ(RealComplaints(), std::vector<std::string>());
}

}  // namespace

}  // namespace end_to_end
