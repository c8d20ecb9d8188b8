// SPDX-License-Identifier: MIT
// Runs whose standard output cannot be written: the pictures are converted nevertheless.
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "samples/camera_jpeg.h"
#include "samples/sensor_dump.h"
#include "tests/end_to_end/card.h"
#include "tests/support/files.h"
#include "tests/support/program.h"
#include "tests/support/test_pair.h"

namespace {

using end_to_end::Card;
using support::StandardOutput;

class UnprintedRun : public testing::TestWithParam<StandardOutput> {
  protected:
    /// Makes twelve pairs. Their names are so long that the output, which is buffered in 8 KiB, is first
    /// written while the eleventh picture is finished.
    UnprintedRun() {
        constexpr std::size_t name_length = 209;
        constexpr std::size_t pairs = 12;
        const auto jpeg = samples::CameraJpeg(samples::CameraExif({}));
        support::WriteFile(card_ / "dump", samples::DumpBytes(support::TestWords()));
        while (bases_.size() < pairs) {
            std::string base(name_length, 'N');
            base.replace(0, 2, std::to_string(10 + bases_.size()));
            support::WriteFile(card_ / (base + ".JPG"), jpeg);
            std::filesystem::create_symlink("dump", card_ / (base + ".RAW"));
            bases_.push_back(base);
        }
    }

    support::Outcome Run(const std::vector<std::string>& arguments) const {
        return support::RunProgram(VELMARCON_PROGRAM, arguments,
                                   {.folder = card_.folder(), .output = GetParam()});
    }

    /// Expects that every pair has its DNG, that all DNGs are identical, and that there are no other files.
    void ExpectWholeDngs() const {
        const auto good = support::ReadFile(card_ / (bases_.front() + ".DNG"));
        ASSERT_EQ(end_to_end::RawPixels(support::TiffFile(good)).size(), 3968U * 2646U);
        for (const std::string& base : bases_) {
            EXPECT_TRUE(support::ReadFile(card_ / (base + ".DNG")) == good) << base;
        }
        EXPECT_EQ(support::Names(card_.folder()).size(), 3 * bases_.size() + 1);
    }

    Card card_;
    std::vector<std::string> bases_;
};

TEST_P(UnprintedRun, WritesEveryDngCompletely) {
    EXPECT_EQ(Run({"-v"}).status, 0);
    ExpectWholeDngs();
    EXPECT_EQ(Run({"-v", "-r"}).status, 0);
    ExpectWholeDngs();
}

TEST_P(UnprintedRun, EndsWithTheStatusOfItsError) {
    EXPECT_EQ(Run({"-i", "nothing"}).status, 2);
    EXPECT_EQ(Run({"-l"}).status, 12);
}

std::string NameOf(const testing::TestParamInfo<StandardOutput>& test) {
    const std::vector<std::string> names = {"", "Closed", "AllClosed", "Full", "Deserted"};
    return names.at(static_cast<std::size_t>(test.param));
}

INSTANTIATE_TEST_SUITE_P(Outputs, UnprintedRun,
                         testing::Values(StandardOutput::kClosed, StandardOutput::kAllClosed,
                                         StandardOutput::kFull, StandardOutput::kDeserted),
                         NameOf);

}  // namespace
