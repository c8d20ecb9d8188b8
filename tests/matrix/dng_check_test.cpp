// SPDX-License-Identifier: MIT
#include "tests/support/dng_check.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "dng/dnglib.h"
#include "exif/lensdb.h"
#include "input/preview.h"
#include "input/read_input_data.h"
#include "sensor/sensdb.h"
#include "tests/matrix/bytes.h"
#include "tests/support/files.h"
#include "tests/support/tiff_file.h"
#include "tiff/tags.h"

namespace {

using matrix::Bytes;
using support::FaultOfDng;
using support::RawStrip;

/// A DNG in the program's format, with an image of 8 x 6 pixels.
Bytes WrittenDng(bool preview) {
    const support::TempFolder folder;
    ReadInputData record;
    record.RawFileName = "L1.RAW";
    record.Width = 8;
    record.Height = 6;
    record.ImageSize = record.Width * record.Height;
    record.ImageData.assign(static_cast<std::size_t>(record.ImageSize), 1000);
    record.PreviewData.assign(PreviewSampler::kSize, 128);
    record.Exif.Make = "Leica Camera AG";
    lensdb lenses;
    sensdb sensors("");
    DNGlib dng(&record, &lenses, &sensors);
    dng.createDNGTree(preview, false, 0, false, false, false);
    dng.writeDNGTree(folder.prefix());
    return support::ReadFile(folder / "L1.DNG");
}

class DngCheck : public testing::Test {
  protected:
    std::string Fault() const {
        RawStrip raw;
        return FaultOfDng(file_, raw);
    }

    /// The offset of the entry of `tag` in IFD0.
    std::size_t Entry(std::uint16_t tag) const {
        const auto order = support::TiffFile(file_).FirstIFD().order;
        const auto index = std::ranges::find(order, tag) - order.begin();
        return 10 + 12 * static_cast<std::size_t>(index);
    }

    void Put(std::size_t offset, std::size_t width, std::uint32_t number) {
        matrix::Put(file_, {offset, width}, number);
    }

    Bytes file_ = WrittenDng(false);
};

TEST_F(DngCheck, FindsTheRawImageOfASoundFile) {
    for (const bool preview : {false, true}) {
        const Bytes file = WrittenDng(preview);
        RawStrip raw;
        EXPECT_EQ(FaultOfDng(file, raw), "");
        EXPECT_EQ(raw.width, 8U);
        EXPECT_EQ(raw.height, 6U);
        EXPECT_EQ(raw.size, 96U);
        EXPECT_EQ(raw.offset, file.size() - 96);
    }
}

TEST_F(DngCheck, RefusesEveryShorterFile) {
    const Bytes whole = file_;
    for (std::size_t size = 0; size < whole.size(); ++size) {
        file_.assign(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        ASSERT_NE(Fault(), "") << size;
    }
}

TEST_F(DngCheck, RefusesBytesAfterTheEnd) {
    file_.push_back(0);
    EXPECT_EQ(Fault(), "there are bytes after the end");
}

TEST_F(DngCheck, RefusesAnUnknownType) {
    Put(Entry(tag::kMake) + 2, 2, 13);
    EXPECT_EQ(Fault(), "IFD0 tag 271 has an unknown type");
}

TEST_F(DngCheck, RefusesUnsortedEntries) {
    Put(Entry(tag::kMake), 2, tag::kModel);
    EXPECT_EQ(Fault(), "IFD0 tag 272 is out of order");
}

TEST_F(DngCheck, RefusesAValueOutsideTheFile) {
    Put(Entry(tag::kMake) + 8, 4, static_cast<std::uint32_t>(file_.size() - 2));
    EXPECT_EQ(Fault(), "IFD0 tag 271 is outside the file");
}

TEST_F(DngCheck, RefusesAValueAtAnOddOffset) {
    const std::size_t field = Entry(tag::kMake) + 8;
    Put(field, 4, matrix::Get(file_, {field}) + 1);
    EXPECT_EQ(Fault(), "IFD0 tag 271 is at an odd offset");
}

TEST_F(DngCheck, RefusesOverlappingValues) {
    Put(Entry(tag::kMake) + 8, 4, matrix::Get(file_, {Entry(tag::kModel) + 8}));
    EXPECT_TRUE(Fault().starts_with("parts overlap") || Fault().starts_with("there is a gap")) << Fault();
}

TEST_F(DngCheck, RefusesALinkToAnotherIFD) {
    const std::size_t count = matrix::Get(file_, {8, 2});
    Put(10 + 12 * count, 4, 8);
    EXPECT_EQ(Fault(), "IFD0 is empty or not the last");
}

TEST_F(DngCheck, RefusesAStripOfTheWrongLength) {
    Put(Entry(tag::kStripByteCounts) + 8, 4, 95);
    EXPECT_EQ(Fault(), "raw strip has the wrong length");
}

TEST_F(DngCheck, RefusesAStripOutsideTheFile) {
    Put(Entry(tag::kStripOffsets) + 8, 4, static_cast<std::uint32_t>(file_.size() - 95));
    EXPECT_EQ(Fault(), "raw strip is outside the file");
}

TEST_F(DngCheck, RefusesSamplesOfAnotherSize) {
    Put(Entry(tag::kBitsPerSample) + 8, 4, 8);
    EXPECT_EQ(Fault(), "the image does not have 16 bits in one strip");
}

}  // namespace
