// SPDX-License-Identifier: MIT
#include "tests/sensor/sensor_oracle.h"

#include <cmath>
#include <random>

namespace oracle {

namespace {

/// Pixel `i`; a pixel past the end is never dark.
int At(const Frame& frame, int i) {
    const auto index = static_cast<std::size_t>(i);
    return index < frame.pixels.size() ? frame.pixels[index] : 65535;
}

float& At(std::vector<float>& offsets, int y) {
    return offsets.at(static_cast<std::size_t>(y));
}

void SetMidway(std::vector<float>& offsets, int y) {
    At(offsets, y - 1) = (At(offsets, y - 2) + At(offsets, y)) / 2;
}

void MeasureEvenRows(const Frame& frame, RowOffsets& offsets) {
    const int width = frame.width;
    const int half = width / 2;
    const auto divisor = static_cast<float>(half);
    int q = 0;
    for (int y = 0; y < frame.height; y += 2) {
        int left = 0;
        for (int j = 0; j < half; j += 2, q += 2) {
            left += At(frame, q) < 100 ? At(frame, q) : 0;
        }
        At(offsets.left, y) = static_cast<float>(left) / divisor;
        int right = 0;
        for (int j = half + 1; j < width; j += 2, q += 2) {
            right += At(frame, q) < 100 ? At(frame, q) : 0;
        }
        At(offsets.right, y) = static_cast<float>(right) / divisor;
        if (y > 0) {
            SetMidway(offsets.left, y);
            SetMidway(offsets.right, y);
        }
    }
}

void MeasureOddRows(const Frame& frame, RowOffsets& offsets) {
    const int width = frame.width;
    int q = width + 1;
    for (int y = 1; y < frame.height; y += 2) {
        int sum = 0;
        int count = 0;
        const auto look = [&] {
            sum += At(frame, q) < 100 ? At(frame, q) : 0;
            count += At(frame, q) < 100 ? 1 : 0;
            q += 2;
        };
        for (int j = 1; j < width / 2; j += 2) {
            look();
        }
        At(offsets.left, y) = static_cast<float>(sum) / static_cast<float>(count);
        sum = 0;
        count = 0;
        for (int j = width / 2; j < width; j += 2) {
            look();
        }
        At(offsets.right, y) = static_cast<float>(sum) / static_cast<float>(count);
        if (y < 2) {
            At(offsets.left, 0) = At(offsets.left, 1);
            At(offsets.right, 0) = At(offsets.right, 1);
        } else {
            SetMidway(offsets.left, y);
            SetMidway(offsets.right, y);
        }
        q += width;
    }
}

void RemoveMean(std::vector<float>& offsets) {
    float sum = 0;
    for (const float offset : offsets) {
        sum += offset;
    }
    for (float& offset : offsets) {
        offset -= sum / static_cast<float>(offsets.size());
    }
}

}  // namespace

Frame RandomFrame(int width, int height, std::uint32_t seed, std::uint32_t lowest, std::uint32_t range) {
    std::mt19937 engine(seed);
    Frame frame = {width, height};
    for (int i = 0; i < width * height; ++i) {
        frame.pixels.push_back(static_cast<std::uint16_t>(lowest + engine() % range));
    }
    return frame;
}

bool EvenRowsAreDarker(const Frame& frame) {
    std::int64_t even = 0;
    std::int64_t odd = 0;
    for (int i = 0; i < frame.width * frame.height; i += 2) {
        const bool even_row = i / frame.width % 2 == 0;
        const int sample = At(frame, even_row ? i : i + 1);
        if (sample < 111) {
            (even_row ? even : odd) += sample;
        }
    }
    return even < odd;
}

RowOffsets Offsets(const Frame& frame) {
    const auto rows = static_cast<std::size_t>(frame.height);
    RowOffsets offsets = {std::vector<float>(rows), std::vector<float>(rows)};
    if (EvenRowsAreDarker(frame)) {
        MeasureEvenRows(frame, offsets);
    } else {
        MeasureOddRows(frame, offsets);
    }
    RemoveMean(offsets.left);
    RemoveMean(offsets.right);
    return offsets;
}

std::vector<std::uint16_t> WithoutDarkField(const Frame& frame, const std::vector<float>& correction,
                                            int gain) {
    RowOffsets offsets = Offsets(frame);
    std::vector<std::uint16_t> result;
    for (int i = 0; i < frame.width * frame.height; ++i) {
        const int x = i % frame.width;
        const int y = i / frame.width;
        float v = correction.at(static_cast<std::size_t>(x)) +
                  (x < frame.width / 2 ? At(offsets.left, y) : At(offsets.right, frame.height - 1 - y));
        v *= static_cast<float>(gain);
        const int level = std::isfinite(v) ? static_cast<int>(v) : 0;
        result.push_back(static_cast<std::uint16_t>((At(frame, i) - level) & 0xFFFF));
    }
    return result;
}

std::vector<std::uint16_t> Dithered(const Frame& frame, const std::vector<float>& levels,
                                    const std::function<float()>& random) {
    std::vector<std::uint16_t> result;
    for (std::size_t i = 0; i < frame.pixels.size(); ++i) {
        const float v = levels.at(i % levels.size()) + random();
        const auto t = static_cast<std::uint16_t>(static_cast<int>(v));
        result.push_back(t < frame.pixels[i] ? static_cast<std::uint16_t>(frame.pixels[i] - t)
                                             : std::uint16_t{0});
    }
    return result;
}

void Interpolate(Frame& frame, int x, int y) {
    const int w = frame.width;
    const int here = y * w + x;
    const auto at = [&](int offset, int mirrored) {
        const bool inside = here + offset >= 0 && here + offset < w * frame.height;
        return At(frame, here + (inside ? offset : mirrored));
    };
    const int left = at(-2, 2);
    const int right = at(2, -2);
    const int upper = at(-w - 1, -w + 1) + at(-w + 1, -w - 1);
    const int lower = at(w - 1, w + 1) + at(w + 1, w - 1);
    int value = 0;
    if (x % 2 == y % 2) {
        value = x < 2 ? right : x >= w - 2 ? left : (left + right) / 2;
    } else {
        const int h = x < 2 ? right : x >= w - 2 ? left : left + right;
        const int diagonal = y < 1 ? 4 * lower : y >= frame.height - 1 ? 4 * upper : 2 * (upper + lower);
        value = (diagonal + h + 5) / 10;
    }
    frame.At(x, y) = static_cast<std::uint16_t>(value);
}

std::vector<float> ColumnLevels(const Frame& frame) {
    const auto columns = static_cast<std::size_t>(frame.width);
    std::vector<unsigned> sums(columns);
    for (std::size_t i = 0; i < frame.pixels.size(); ++i) {
        sums[i % columns] = (sums[i % columns] + frame.pixels[i]) % 65536;
    }
    unsigned darkest = 65535;
    for (const unsigned sum : sums) {
        darkest = sum < darkest ? sum : darkest;
    }
    std::vector<float> levels;
    levels.reserve(columns);
    for (const unsigned sum : sums) {
        levels.push_back(static_cast<float>(sum - darkest) / static_cast<float>(frame.height));
    }
    return levels;
}

}  // namespace oracle
