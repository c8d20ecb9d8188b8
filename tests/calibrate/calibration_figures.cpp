// SPDX-License-Identifier: MIT
// calibration_figures [SENSORS]: measures how many defects of simulated sensors the calibration finds, and
// how good its levels are. Uses SENSORS (default 10) sensors of each kind, different from those in the tests.
#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "tests/calibrate/judged_sensor.h"

namespace {

using calibrate_tests::ExposureCounts;
using calibrate_tests::Judge;
using calibrate_tests::Judgement;

constexpr std::uint64_t kFirstSeed = 501;

struct Totals {
    int defects = 0;
    int missed = 0;
    int false_finds = 0;
    int doubtful = 0;
    double worst = 0;  // stripes, relative to the optimum

    void Add(const Judgement& judgement) {
        defects += judgement.defects;
        missed += static_cast<int>(judgement.missed.size());
        false_finds += static_cast<int>(judgement.false_finds.size());
        doubtful += static_cast<int>(judgement.doubtful.size());
        worst = std::max(worst, judgement.stripes / judgement.optimum);
    }
};

void Print(const char* what, const ExposureCounts& counts, const Totals& totals) {
    std::printf("%-9s %4d %5d %5d %8d %7d %6d %9d %8.2f\n", what, counts.low, counts.high, counts.flat,
                totals.defects, totals.defects - totals.missed, totals.false_finds, totals.doubtful,
                totals.worst);
    (void)std::fflush(stdout);
}

void Measure(const ExposureCounts& counts, float weakest, int sensors) {
    Totals totals;
    for (int i = 0; i < sensors; ++i) {
        totals.Add(
            Judge(samples::RandomSensor(kFirstSeed + static_cast<std::uint64_t>(i), weakest, counts.flat > 0),
                  counts));
    }
    Print((std::to_string(static_cast<int>(weakest)) + " units").c_str(), counts, totals);
}

void MeasureSound(const ExposureCounts& counts, int sensors) {
    Totals totals;
    for (int i = 0; i < sensors; ++i) {
        totals.Add(Judge(samples::SoundSensor(kFirstSeed + static_cast<std::uint64_t>(i)), counts));
    }
    Print("sound", counts, totals);
}

}  // namespace

int main(int argc, char** argv) {
    constexpr int usual = 10;
    const int sensors = argc > 1 ? std::atoi(argv[1]) : usual;  // NOLINT(cert-err34-c): typed by a person
    std::printf("Weakest    160  2500  flat  defects   found  false  doubtful  stripes\n");
    for (const ExposureCounts& counts :
         {ExposureCounts{1, 0, 0}, ExposureCounts{2, 0, 0}, ExposureCounts{4, 0, 0}, ExposureCounts{4, 4, 0},
          ExposureCounts{4, 4, 2}}) {
        for (const float weakest : {6.0F, 3.0F}) {
            Measure(counts, weakest, sensors);
        }
        MeasureSound(counts, sensors);
    }
    return 0;
}
