// SPDX-License-Identifier: MIT
#include "calibrate/light_defects.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "calibrate/neighbours.h"
#include "calibrate/segments.h"
#include "calibrate/statistics.h"

namespace {

using namespace sensor_grid;
using segments::Segment;

constexpr int kReach = 3;  // columns of the same colour on either side
constexpr float kLeastWhole = 0.015F;
constexpr float kLeastWholeDeviations = 5;
constexpr float kDoubtfulWholeDeviations = 4;
constexpr float kLeastPart = 0.02F;
constexpr float kDoubtfulPart = 0.01F;
constexpr int kLeastRows = 48;
constexpr float kBlindFrom = 0.9F;  // missing fraction of the signal

/// How far every block differs from its neighbours on both sides, column by column.
class Contrast {
  public:
    Contrast(const Grid& answers, const DefectMask& listed) : values_(kGridSize) {
        std::vector<float> noises;
        std::vector<float> row(kColumns);
        std::vector<float> clearly(kColumns);
        std::vector<float> from_both(kColumns);
        constexpr int sampled = 10;
        for (int block = 0; block < kBlocks; ++block) {
            TakeRow(Row(answers, block), listed, block, row);
            Compare(row, clearly, from_both);
            for (int x = 0; x < kColumns; ++x) {
                const bool skip = listed.IsListed(x, block);
                values_[(static_cast<std::size_t>(x) * kBlocks) + static_cast<std::size_t>(block)] =
                    skip ? 0 : clearly[static_cast<std::size_t>(x)];
            }
            if (block % sampled == 0) {
                noises.push_back(statistics::DeviationAround(0, from_both));
            }
        }
        noise_ = std::max(statistics::Median(noises), 0.0001F);
    }

    std::span<const float> Column(int x) const {
        return std::span(values_).subspan(static_cast<std::size_t>(x) * kBlocks, kBlocks);
    }
    float noise() const { return noise_; }

  private:
    /// CompareNeighbours for three columns of the same colour on either side, optimised for many rows. Beyond
    /// an edge, columns are mirrored.
    static void Compare(std::span<const float> row, std::vector<float>& clearly,
                        std::vector<float>& from_both) {
        constexpr std::size_t margin = std::size_t{2} * kReach;
        std::vector<float> wide(row.size() + (2 * margin));
        std::ranges::copy(row, wide.begin() + margin);
        for (std::size_t i = 1; i <= margin; ++i) {
            // The same colour, but not the column itself.
            const std::size_t mirrored = i % 2 == 0 ? i : i + 2;
            wide[margin - i] = row[mirrored];
            wide[margin + row.size() - 1 + i] = row[row.size() - 1 - mirrored];
        }
        const float* const own = wide.data() + margin;
        float* __restrict const out = clearly.data();
        float* __restrict const both = from_both.data();
        for (std::size_t x = 0; x < row.size(); ++x) {
            const float* const here = own + x;
            const float left = *here - MedianOfThree(here[-2], here[-4], here[-6]);
            const float right = *here - MedianOfThree(here[2], here[4], here[6]);
            both[x] = (left + right) / 2;
            // If both have the same sign, the one nearer to 0, else 0.
            out[x] = std::max(std::min(left, right), 0.0F) + std::min(std::max(left, right), 0.0F);
        }
    }

    static float MedianOfThree(float a, float b, float c) {
        return std::max(std::min(a, b), std::min(std::max(a, b), c));
    }

    /// Copies a row of responses, in which each listed block gets the value of the previous column of the
    /// same colour.
    static void TakeRow(std::span<const float> answers, const DefectMask& listed, int block,
                        std::vector<float>& row) {
        std::ranges::copy(answers, row.begin());
        for (int x = 0; x < kColumns; ++x) {
            if (listed.IsListed(x, block)) {
                const int stand_in = x >= 2 ? x - 2 : x + 2;
                row[static_cast<std::size_t>(x)] = row[static_cast<std::size_t>(stand_in)];
            }
        }
    }

    std::vector<float> values_;
    float noise_ = 0;
};

/// The mean response of each column over its unlisted rows; its neighbour's if there are none.
std::vector<float> ColumnAnswers(const Grid& answers, const DefectMask& listed) {
    std::vector<float> sums(kColumns);
    std::vector<float> counts(kColumns);
    for (int block = 0; block < kBlocks; ++block) {
        const auto row = Row(answers, block);
        for (int column = 0; column < kColumns; ++column) {
            if (!listed.IsListed(column, block)) {
                sums[static_cast<std::size_t>(column)] += row[static_cast<std::size_t>(column)];
                ++counts[static_cast<std::size_t>(column)];
            }
        }
    }
    for (std::size_t x = 0; x < sums.size(); ++x) {
        sums[x] = counts[x] > 0 ? sums[x] / counts[x] : sums[x >= 2 ? x - 2 : x + 2];
    }
    return sums;
}

DefectKind KindOf(float strength) {
    if (strength > 0) {
        return DefectKind::kStrong;
    }
    return strength < -kBlindFrom ? DefectKind::kBlind : DefectKind::kWeak;
}

/// The parts that differ by at least `least`. Parts with the same sign are joined if at most a speck of dust
/// lies between them.
std::vector<Segment> Joined(const std::vector<Segment>& parts, float least) {
    constexpr int speck = 16;  // blocks
    std::vector<Segment> joined;
    for (const Segment& part : parts) {
        if (std::abs(part.level) < least) {
            continue;
        }
        if (!joined.empty() && part.begin - joined.back().end <= speck &&
            (part.level > 0) == (joined.back().level > 0)) {
            Segment& last = joined.back();
            const auto before = static_cast<float>(last.end - last.begin);
            const auto more = static_cast<float>(part.end - part.begin);
            last.level = ((before * last.level) + (more * part.level)) / (before + more);
            last.end = part.end;
        } else {
            joined.push_back(part);
        }
    }
    return joined;
}

class Search {
  public:
    Search(const FlatStack& stack, const DefectMask& listed)
        : count_(stack.count()),
          listed_(listed),
          all_(stack.Combined(), listed),
          every_(stack.NearestToSound(), listed),
          answers_(ColumnAnswers(stack.Combined(), listed)),
          whole_(CompareNeighbours(answers_, kReach, false)) {
        std::vector<float> apart;
        for (const StandOut& out : whole_) {
            apart.push_back(out.from_both);
        }
        natural_ = statistics::DeviationAround(0, apart);
    }

    std::vector<Defect> Run() {
        for (int column = 0; column < kColumns; ++column) {
            LookAt(column);
        }
        return found_;
    }

  private:
    void LookAt(int column);
    void AddWhole(int column);
    void AddPart(int column, const Segment& part);
    float InEvery(int column, int begin, int end) const;
    float OfNeighbours(int column, float difference) const;

    int count_;
    const DefectMask& listed_;
    Contrast all_;
    Contrast every_;
    std::vector<float> answers_;   // mean of each column
    std::vector<StandOut> whole_;  // comparison of these means
    float natural_;                // standard deviation of the columns' responses from their neighbours'
    std::vector<Defect> found_;
};

/// How far the blocks differ in the exposure in which they differ least.
float Search::InEvery(int column, int begin, int end) const {
    const auto part =
        every_.Column(column).subspan(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin));
    std::vector<float> copy(part.begin(), part.end());
    return statistics::Median(copy);
}

/// The difference as a fraction of the neighbours' response.
float Search::OfNeighbours(int column, float difference) const {
    const auto x = static_cast<std::size_t>(column);
    return difference / std::max(answers_[x] - whole_[x].from_both, 0.1F);
}

void Search::AddWhole(int column) {
    const float clearly = whole_[static_cast<std::size_t>(column)].clearly;
    const float deviations = std::abs(clearly) / std::max(natural_, 0.0001F);
    if (std::abs(clearly) < kLeastWhole || deviations < kDoubtfulWholeDeviations ||
        listed_.SoundBlocks(column) < kBlocks / 4) {
        return;
    }
    const bool in_every = InEvery(column, 0, kBlocks) / clearly > 0.5F;
    found_.push_back({.column = column,
                      .first_row = 0,
                      .end_row = kRows,
                      .kind = KindOf(OfNeighbours(column, clearly)),
                      .strength = OfNeighbours(column, clearly),
                      .in_noise = std::abs(clearly) * std::sqrt(static_cast<float>(kBlocks)) / all_.noise(),
                      .seen = in_every ? count_ : 1,
                      .exposures = count_,
                      .doubtful = deviations < kLeastWholeDeviations || !in_every});
}

void Search::AddPart(int column, const Segment& part) {
    const bool in_every = InEvery(column, part.begin, part.end) / part.level > 0.4F;
    const int rows = (part.end - part.begin) * kBlockRows;
    const bool is_short = rows < 2 * kLeastRows;
    if (!in_every || (is_short && part.level > 0)) {
        return;  // a track or a hot pixel
    }
    found_.push_back({.column = column,
                      .first_row = part.begin * kBlockRows,
                      .end_row = part.end * kBlockRows,
                      .kind = KindOf(OfNeighbours(column, part.level)),
                      .strength = OfNeighbours(column, part.level),
                      .in_noise = std::abs(part.level) *
                                  std::sqrt(static_cast<float>(part.end - part.begin)) / all_.noise(),
                      .seen = count_,
                      .exposures = count_,
                      .doubtful = std::abs(part.level) < kLeastPart || is_short || part.level > 0});
}

void Search::LookAt(int column) {
    std::vector<float> values(all_.Column(column).begin(), all_.Column(column).end());
    for (float& value : values) {
        value /= all_.noise();
    }
    const float natural_part = kLeastWholeDeviations * natural_;
    bool part_found = false;
    if (segments::MayChange(values)) {
        for (Segment& part :
             Joined(segments::Find(values), std::max(kDoubtfulPart, natural_part) / all_.noise())) {
            part.level *= all_.noise();
            if ((part.end - part.begin) * kBlockRows >= kLeastRows &&
                part.end - part.begin < kBlocks * 9 / 10) {
                AddPart(column, part);
                part_found = true;
            }
        }
    }
    if (!part_found) {
        AddWhole(column);
    }
}

}  // namespace

std::vector<Defect> FindLightDefects(const FlatStack& stack, const DefectMask& listed) {
    return stack.count() == 0 ? std::vector<Defect>() : Search(stack, listed).Run();
}
