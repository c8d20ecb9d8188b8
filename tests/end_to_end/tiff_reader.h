// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_END_TO_END_TIFF_READER_H
#define VELMARCON_TESTS_END_TO_END_TIFF_READER_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <tiffio.h>

namespace end_to_end {

/// Size and kind of an image according to the common tags.
struct ImageKind {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint16_t bits = 0;
    std::uint16_t samples = 0;
    std::uint16_t photometric = 0;

    bool operator==(const ImageKind&) const = default;
};

/// A file read by libtiff; the current image is at first that of IFD0.
class TiffReader {
  public:
    explicit TiffReader(const std::string& path);

    /// For libtiff's own functions; null if libtiff could not open the file.
    TIFF* file() const { return file_.get(); }

    /// libtiff's warnings and errors since the last file was opened, except for unknown tags. In IFD0 it does
    /// not know the TIFF/EP tags SelfTimerMode (34859), DateTimeOriginal (36867), FocalPlaneX/YResolution and
    /// ...ResolutionUnit (37390 to 37392) and TIFF/EPStandardID (37398).
    static std::vector<std::string> Complaints();

    /// Makes the image of the only SubIFD the current one.
    void GoToSubIFD() const;

    template <typename Value>
    Value Field(std::uint32_t tag) const {
        Value value = {};
        EXPECT_EQ(TIFFGetField(file(), tag, &value), 1) << tag;
        return value;
    }

    ImageKind Kind() const;

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
    std::unique_ptr<TIFF, void (*)(TIFF*)> file_;
};

}  // namespace end_to_end

#endif  // VELMARCON_TESTS_END_TO_END_TIFF_READER_H
