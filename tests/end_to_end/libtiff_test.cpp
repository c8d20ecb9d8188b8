// SPDX-License-Identifier: MIT
// Reads the DNGs that the program writes with libtiff.
#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <tiffio.h>

#include "samples/sample_databases.h"
#include "tests/end_to_end/card.h"
#include "tests/end_to_end/tiff_reader.h"
#include "tests/end_to_end/write_dng.h"
#include "tests/support/test_pair.h"

namespace end_to_end {

namespace {

constexpr ImageKind kRawImage = {3968, 2646, 16, 1, PHOTOMETRIC_CFA};
constexpr ImageKind kPreview = {320, 240, 8, 3, PHOTOMETRIC_RGB};

/// Converts the test pattern and opens the result; the files exist for the lifetime of the test.
class LibTIFF : public testing::Test {
  protected:
    void Open(const std::vector<std::string>& options) {
        support::WritePair(folder_.path().string(), kBase);
        support::WriteFile(folder_ / "lensdb.ini", samples::LensDatabase());
        reader_ = std::make_unique<TiffReader>(WriteDng(folder_, options));
        ASSERT_NE(reader_->file(), nullptr);
    }

    const TiffReader& reader() const { return *reader_; }

  private:
    support::TempFolder folder_;
    std::unique_ptr<TiffReader> reader_;
};

/// The preview consists of single pixels from even rows and odd columns, mapped by a square-root curve.
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
    EXPECT_EQ(reader().Kind(), kRawImage);
    EXPECT_TRUE(reader().Strip<std::uint16_t>() == ExpectedPixels(support::TestPixel));
    EXPECT_EQ(TIFFNumberOfDirectories(reader().file()), 1);
    EXPECT_EQ(TiffReader::Complaints(), std::vector<std::string>());
}

TEST_F(LibTIFF, ReadsPreviewAndRawImageOfAFileWithBoth) {
    Open({"-p", "-b"});
    EXPECT_EQ(reader().Kind(), kPreview);
    EXPECT_TRUE(reader().Strip<std::uint8_t>() == ExpectedPreview());

    reader().GoToSubIFD();
    EXPECT_EQ(reader().Kind(), kRawImage);
    EXPECT_TRUE(reader().Strip<std::uint16_t>() == ExpectedPixels(support::TestPixel));
    EXPECT_EQ(TIFFLastDirectory(reader().file()), 1);
    EXPECT_EQ(TiffReader::Complaints(), std::vector<std::string>());
}

TEST_F(LibTIFF, ReadsTheExifIFD) {
    Open({"-p", "-l"});
    const auto offset = reader().Field<std::uint64_t>(TIFFTAG_EXIFIFD);
    ASSERT_EQ(TIFFReadEXIFDirectory(reader().file(), offset), 1);
    EXPECT_EQ(reader().Field<std::uint16_t>(EXIFTAG_FOCALLENGTHIN35MMFILM), 67);
    EXPECT_STREQ(reader().Field<const char*>(EXIFTAG_DATETIMEDIGITIZED), "2007:08:02 22:13:49");
    EXPECT_STREQ(reader().Field<const char*>(EXIFTAG_LENSMAKE), "Leica");
    EXPECT_STREQ(reader().Field<const char*>(EXIFTAG_LENSMODEL), "Summicron-M 50mm f/2");
    EXPECT_STREQ(reader().Field<const char*>(EXIFTAG_LENSSERIALNUMBER), "1234567");
    EXPECT_EQ(TiffReader::Complaints(), std::vector<std::string>());
}

}  // namespace

}  // namespace end_to_end
