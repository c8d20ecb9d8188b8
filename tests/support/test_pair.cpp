// SPDX-License-Identifier: MIT
#include "tests/support/test_pair.h"

#include "samples/sensor_dump.h"
#include "tests/support/files.h"

namespace support {

std::uint16_t TestPixel(int x, int y) {
    return static_cast<std::uint16_t>((x * 7 + y * 131 + x * y % 97) % 16384);
}

const std::vector<std::uint16_t>& TestWords() {
    static const std::vector<std::uint16_t> words = [] {
        constexpr std::uint16_t outside = 0xFFFF;
        std::vector<std::uint16_t> made(samples::kDumpWords, outside);
        for (int y = 0; y < samples::kSensorHeight; ++y) {
            for (int x = 0; x < samples::kSensorWidth; ++x) {
                made[samples::WordIndex(x, y)] = TestPixel(x, y);
            }
        }
        return made;
    }();
    return words;
}

void WritePair(const std::string& folder, const std::string& base, const samples::ExifBlock& block) {
    WriteFile(folder + "/" + base + ".JPG", samples::CameraJpeg(block));
    WriteFile(folder + "/" + base + ".RAW", samples::DumpBytes(TestWords()));
}

void WritePair(const std::string& folder, const std::string& base, const samples::Shot& shot) {
    WritePair(folder, base, samples::CameraExif(shot));
}

}  // namespace support
