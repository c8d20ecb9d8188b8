// SPDX-License-Identifier: MIT
#include "calibrate/dark_defects.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

#include "calibrate/column_series.h"
#include "calibrate/neighbours.h"
#include "calibrate/segments.h"
#include "calibrate/statistics.h"
#include "sensor/sensor_frame.h"

namespace {

using namespace sensor_grid;
using segments::Segment;

constexpr int kReach = 4;  // columns of the same colour on either side with which a level is compared

// Thresholds for the difference of a level from its neighbours'; see the header.
constexpr float kLeastWhole = 5.5F;
constexpr float kLeastWholeDeviations = 5;
constexpr float kDoubtfulWholeDeviations = 4;

// Thresholds for a part of a column, in raw units: listed from the first on, doubtful from the second on.
constexpr float kLeastPart = 1.5F;
constexpr float kDoubtfulPart = 0.75F;

constexpr int kLeastBlocks = 3;
constexpr float kLeastInNoise = 7;

constexpr float kLeastUnsteady = 2.5F;  // difference of the levels at two ISO speeds, in raw units
constexpr float kLeastUnsteadyDeviations = 7;

constexpr float kStuckSpread = 0.3F;  // relative to the noise; a sound patch has 1.9
constexpr int kLeastStuckPatches = 3;

/// A defect of up to this many rows, seen in a single exposure, may be a particle's track.
constexpr int kLongestTrack = 120;

class Search {
  public:
    Search(const DarkStack& stack, const Grid& combined)
        : stack_(stack), series_(combined), levels_(stack.Reference()) {
        for (std::size_t x = 0; x < levels_.size(); ++x) {
            levels_[x] += series_.medians()[x];
        }
        neighbours_ = CompareNeighbours(levels_, kReach, true);
        std::vector<float> apart;
        for (const StandOut& out : neighbours_) {
            apart.push_back(out.from_both);
        }
        natural_ = statistics::Deviation(apart);
    }

    std::vector<Defect> Run();

  private:
    void LookAtColumn(int column);
    std::vector<Segment> DefectiveParts(int column, const std::vector<Segment>& parts, float sound) const;
    int SeenIn(int column, const Segment& part, const std::vector<Segment>& parts, float sound) const;
    void AddParts(int column, const std::vector<Segment>& parts, float sound);
    void AddWhole(int column, float above, float clearly);
    void AddStuck(int column);
    void AddUnsteady();
    float SoundLevel(int column, const std::vector<Segment>& parts) const;
    DefectKind KindOf(int column, float level, float above) const;
    int SeenInPart(int column, const Segment& part, bool above) const;
    int SeenAsWhole(int column, float above) const;
    bool IsListed(int column) const;
    int Exposures() const { return static_cast<int>(stack_.exposures().size()); }

    const DarkStack& stack_;
    ColumnSeries series_;
    std::vector<float> levels_;  // of each column, including the black level, in raw units at the base ISO
    std::vector<StandOut> neighbours_;
    float natural_ = 0;  // standard deviation of the columns' levels from their neighbours'
    std::vector<Defect> found_;
};

/// The kind of a defect with `level`, which is `above` the sound level.
DefectKind Search::KindOf(int column, float level, float above) const {
    float highest_gain = 1;
    for (const DarkExposure& exposure : stack_.exposures()) {
        highest_gain = std::max(highest_gain, exposure.gain);
    }
    constexpr float nearly = 0.97F;
    if (levels_[static_cast<std::size_t>(column)] + level >= nearly * sensor_frame::kWhite / highest_gain) {
        return DefectKind::kSaturated;
    }
    return above > 0 ? DefectKind::kBright : DefectKind::kLow;
}

/// The level of the column's sound part, relative to its median. Each part is tried, and the least costly
/// explanation wins. The cost grows with the distance from the neighbours, as in a normal distribution; with
/// each defect that makes the column darker, since these are rarer than brighter ones; and with the number of
/// defective rows.
float Search::SoundLevel(int column, const std::vector<Segment>& parts) const {
    constexpr float rare_low = 2.5F;  // a factor of 12
    constexpr float whole_column = 0.7F;
    constexpr int few_blocks = 10;
    constexpr float rare_few = 6;
    const float spread = std::max(natural_, 0.3F);
    const float apart = neighbours_[static_cast<std::size_t>(column)].from_both;
    float best = 0;
    float least = std::numeric_limits<float>::max();
    for (const Segment& candidate : parts) {
        const float far = std::abs(apart + candidate.level) / spread;
        // The tail of a normal distribution, but no worse than a defect.
        float cost = far < 4 ? far * far / 2 : 8 + (4 * std::log2(far / 4));
        cost += candidate.end - candidate.begin < few_blocks ? rare_few : 0;
        for (const Segment& other : parts) {
            const float above = other.level - candidate.level;
            if (std::abs(above) >= kDoubtfulPart) {
                cost += above < 0 ? rare_low : 0;
                cost += whole_column * static_cast<float>(other.end - other.begin) / kBlocks;
            }
        }
        if (cost < least) {
            least = cost;
            best = candidate.level;
        }
    }
    // The mean of all parts with that level.
    float sum = 0;
    float count = 0;
    for (const Segment& part : parts) {
        if (std::abs(part.level - best) < kDoubtfulPart) {
            const auto blocks = static_cast<float>(part.end - part.begin);
            sum += blocks * part.level;
            count += blocks;
        }
    }
    return sum / count;
}

/// The number of exposures in which the part is above, or below, the column's median.
int Search::SeenInPart(int column, const Segment& part, bool above) const {
    std::vector<float> counts;
    for (int patch = (part.begin + kPatchBlocks - 1) / kPatchBlocks;
         patch < std::min(part.end / kPatchBlocks, kPatches); ++patch) {
        counts.push_back(
            static_cast<float>(above ? stack_.SeenAbove(column, patch) : stack_.SeenBelow(column, patch)));
    }
    return counts.empty() ? Exposures() : static_cast<int>(statistics::Median(counts));
}

int Search::SeenAsWhole(int column, float above) const {
    int seen = 0;
    for (const DarkExposure& exposure : stack_.exposures()) {
        std::vector<float> near;
        for (int x = std::max(HalfBegin(column), column - (2 * kReach));
             x < std::min(HalfEnd(column), column + (2 * kReach) + 1); ++x) {
            near.push_back(exposure.columns[static_cast<std::size_t>(x)]);
        }
        const float own = exposure.columns[static_cast<std::size_t>(column)] - statistics::Median(near);
        seen += own * (above > 0 ? 1.0F : -1.0F) / exposure.gain > std::abs(above) / 2 ? 1 : 0;
    }
    return seen;
}

/// The parts that differ from `sound`; adjacent parts with the same sign are joined. Each end is then
/// extended over blocks that clearly differ: a block that the defect only partly covers may have been
/// clipped.
std::vector<Segment> Search::DefectiveParts(int column, const std::vector<Segment>& parts,
                                            float sound) const {
    constexpr float clearly = 3.5F;
    std::vector<Segment> joined;
    for (const Segment& part : parts) {
        const float above = part.level - sound;
        if (std::abs(above) < kDoubtfulPart) {
            continue;
        }
        const bool continues = !joined.empty() && joined.back().end == part.begin &&
                               (above > 0) == (joined.back().level > sound);
        if (!continues) {
            joined.push_back(part);
            continue;
        }
        Segment& last = joined.back();
        const bool longer = part.end - part.begin > last.end - last.begin;
        last.level = longer ? part.level : last.level;
        last.end = part.end;
    }
    const auto values = series_.Column(column);
    for (Segment& part : joined) {
        const auto bad = [&](int block) {
            const float above = values[static_cast<std::size_t>(block)] - sound;
            return (part.level > sound ? above : -above) > clearly * series_.noise();
        };
        for (int i = 0; i < kPatchBlocks && part.begin > 0 && bad(part.begin - 1); ++i) {
            --part.begin;
        }
        for (int i = 0; i < kPatchBlocks && part.end < kBlocks && bad(part.end); ++i) {
            ++part.end;
        }
    }
    return joined;
}

/// The number of exposures in which a part differs from `sound`. Patches were compared with the column's
/// median; if that is the level of the defect, the sound parts are the ones that differ.
int Search::SeenIn(int column, const Segment& part, const std::vector<Segment>& parts, float sound) const {
    const float above = part.level - sound;
    if (std::abs(part.level) > std::abs(above) / 2) {
        return SeenInPart(column, part, above > 0);
    }
    int seen = 0;
    for (const Segment& other : parts) {
        const bool is_sound = std::abs(other.level - sound) < kDoubtfulPart;
        seen = is_sound ? std::max(seen, SeenInPart(column, other, above < 0)) : seen;
    }
    return seen;
}

void Search::AddParts(int column, const std::vector<Segment>& parts, float sound) {
    for (const Segment& part : DefectiveParts(column, parts, sound)) {
        const float above = part.level - sound;
        const auto blocks = static_cast<float>(part.end - part.begin);
        const float in_noise = std::abs(above) * std::sqrt(blocks) / series_.noise();
        if (part.end - part.begin < kLeastBlocks || in_noise < kLeastInNoise) {
            continue;  // a remainder of the segmentation
        }
        const int rows = (part.end - part.begin) * kBlockRows;
        const bool maybe_track = Exposures() == 1 && rows < kLongestTrack;
        const bool doubtful = std::abs(above) < kLeastPart || maybe_track;
        const int seen = SeenIn(column, part, parts, sound);
        if (doubtful && seen == 0) {
            continue;  // a remainder of a track
        }
        found_.push_back({.column = column,
                          .first_row = part.begin * kBlockRows,
                          .end_row = part.end * kBlockRows,
                          .kind = KindOf(column, part.level, above),
                          .strength = above,
                          .in_noise = in_noise,
                          .seen = seen,
                          .exposures = Exposures(),
                          .doubtful = doubtful});
    }
}

void Search::AddWhole(int column, float above, float clearly) {
    const float deviations = std::abs(clearly) / std::max(natural_, 0.01F);
    if (std::abs(clearly) < kLeastWhole || deviations < kDoubtfulWholeDeviations) {
        return;
    }
    found_.push_back({.column = column,
                      .first_row = 0,
                      .end_row = kRows,
                      .kind = KindOf(column, 0, above),
                      .strength = above,
                      .in_noise = std::abs(above) * std::sqrt(static_cast<float>(kBlocks)) / series_.noise(),
                      .seen = SeenAsWhole(column, above),
                      .exposures = Exposures(),
                      .doubtful = deviations < kLeastWholeDeviations});
}

void Search::LookAtColumn(int column) {
    const StandOut& out = neighbours_[static_cast<std::size_t>(column)];
    std::vector<float> values(series_.Column(column).begin(), series_.Column(column).end());
    for (float& value : values) {
        value /= series_.noise();
    }
    if (!segments::MayChange(values)) {
        AddWhole(column, out.from_both, out.clearly);
        return;
    }
    std::vector<Segment> parts = segments::Find(values);
    for (Segment& part : parts) {
        part.level *= series_.noise();
    }
    const float sound = parts.size() == 1 ? 0 : SoundLevel(column, parts);
    if (std::abs(out.clearly + sound) >= kLeastWhole &&
        std::abs(out.clearly + sound) >= kLeastWholeDeviations * natural_ &&
        std::abs(out.clearly) > kLeastWhole) {
        // No part of the column matches its neighbours.
        AddWhole(column, out.from_both, out.clearly);
        return;
    }
    AddParts(column, parts, sound);
}

bool Search::IsListed(int column) const {
    return std::ranges::any_of(found_, [&](const Defect& defect) { return defect.column == column; });
}

/// Adds runs of patches that hardly vary.
void Search::AddStuck(int column) {
    int begin = 0;
    for (int patch = 0; patch <= kPatches; ++patch) {
        if (patch < kPatches && stack_.Spread(column, patch) < kStuckSpread) {
            continue;
        }
        if (patch - begin >= kLeastStuckPatches) {
            const int first_row = begin * kPatchRows;
            const int end_row = patch == kPatches ? kRows : patch * kPatchRows;
            const auto covering = std::ranges::find_if(found_, [&](const Defect& defect) {
                return defect.column == column && defect.first_row <= first_row + kPatchRows &&
                       defect.end_row >= end_row - kPatchRows;
            });
            if (covering == found_.end()) {
                found_.push_back({.column = column,
                                  .first_row = first_row,
                                  .end_row = end_row,
                                  .kind = DefectKind::kStuck,
                                  .strength = neighbours_[static_cast<std::size_t>(column)].from_both,
                                  .seen = Exposures(),
                                  .exposures = Exposures()});
            } else if (covering->kind != DefectKind::kSaturated) {
                covering->kind = DefectKind::kStuck;
                covering->doubtful = false;
            }
        }
        begin = patch + 1;
    }
}

/// Adds columns whose level, divided by the ISO gain, differs between two ISO speeds.
void Search::AddUnsteady() {
    std::map<float, std::vector<std::vector<float>>> apart;  // by gain, exposure, column
    for (const DarkExposure& exposure : stack_.exposures()) {
        std::vector<float> values;
        for (const StandOut& out : CompareNeighbours(exposure.columns, kReach, true)) {
            values.push_back(out.from_both / exposure.gain);
        }
        apart[exposure.gain].push_back(std::move(values));
    }
    if (apart.size() < 2) {
        return;
    }
    const auto& low = apart.begin()->second;
    const auto& high = apart.rbegin()->second;
    const auto mean = [](const std::vector<std::vector<float>>& of, std::size_t column) {
        float sum = 0;
        for (const auto& exposure : of) {
            sum += exposure[column];
        }
        return sum / static_cast<float>(of.size());
    };
    std::vector<float> differences(kColumns);
    for (std::size_t x = 0; x < differences.size(); ++x) {
        differences[x] = mean(low, x) - mean(high, x);
    }
    std::vector<float> copy = differences;
    const float limit = std::max(kLeastUnsteady, kLeastUnsteadyDeviations * statistics::Deviation(copy));
    for (int x = 0; x < kColumns; ++x) {
        const float difference = differences[static_cast<std::size_t>(x)];
        if (std::abs(difference) > limit && !IsListed(x)) {
            found_.push_back(
                {.column = x,
                 .first_row = 0,
                 .end_row = kRows,
                 .kind = DefectKind::kUnsteady,
                 .strength = difference,
                 .in_noise = std::abs(difference) * std::sqrt(static_cast<float>(kBlocks)) / series_.noise(),
                 .seen = Exposures(),
                 .exposures = Exposures()});
        }
    }
}

std::vector<Defect> Search::Run() {
    for (int column = 0; column < kColumns; ++column) {
        LookAtColumn(column);
        AddStuck(column);
    }
    AddUnsteady();
    return found_;
}

}  // namespace

std::vector<Defect> FindDarkDefects(const DarkStack& stack, const Grid& combined) {
    return Search(stack, combined).Run();
}
