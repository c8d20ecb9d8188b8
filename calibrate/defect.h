// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_DEFECT_H
#define VELMARCON_CALIBRATE_DEFECT_H

/// What is wrong with a column.
enum class DefectKind {
    kBright,     ///< higher in the dark than its level explains
    kLow,        ///< lower in the dark
    kSaturated,  ///< at the end of the range in the dark
    kStuck,      ///< always the same value, whatever light and ISO speed
    kUnsteady,   ///< a level that does not grow with the ISO speed
    kBlind,      ///< gives next to nothing in the light
    kWeak,       ///< gives less in the light than its neighbours
    kStrong,     ///< gives more in the light
};

/// A run of one column that does not work as it should.
struct Defect {
    int column = 0;
    int first_row = 0;
    int end_row = 0;  ///< exclusive
    DefectKind kind = DefectKind::kBright;
    float strength = 0;  ///< in the dark: raw units at the base ISO; in the light: part of the signal, signed
    float in_noise = 0;  ///< the strength of all its rows together, in standard deviations of the noise
    int seen = 0;        ///< in so many exposures
    int exposures = 0;   ///< of so many
    bool doubtful = false;
};

/// Whether a defect of this kind is one that flat exposures show; its strength is then a part of the signal.
constexpr bool ShowsInLight(DefectKind kind) {
    return kind == DefectKind::kBlind || kind == DefectKind::kWeak || kind == DefectKind::kStrong;
}

#endif  // VELMARCON_CALIBRATE_DEFECT_H
