// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_DEFECT_H
#define VELMARCON_CALIBRATE_DEFECT_H

/// What is wrong with a column.
enum class DefectKind {
    kBright,     ///< higher in the dark than its level explains
    kLow,        ///< lower in the dark than its level explains
    kSaturated,  ///< at the end of the range in the dark
    kStuck,      ///< always the same value, regardless of light and ISO speed
    kUnsteady,   ///< a level that does not grow with the ISO speed
    kBlind,      ///< hardly responds to light
    kWeak,       ///< responds less to light than its neighbours
    kStrong,     ///< responds more to light than its neighbours
};

/// A run of rows of one column that does not work properly.
struct Defect {
    int column = 0;
    int first_row = 0;
    int end_row = 0;  ///< exclusive
    DefectKind kind = DefectKind::kBright;
    /// In the dark: raw units at the base ISO; in the light: fraction of the signal; signed.
    float strength = 0;
    float in_noise = 0;  ///< the strength over all its rows, in standard deviations of the noise
    int seen = 0;        ///< number of exposures in which it shows
    int exposures = 0;   ///< number of exposures
    bool doubtful = false;
};

/// Whether a defect of this kind is found in flat exposures; its strength is then a fraction of the signal.
constexpr bool ShowsInLight(DefectKind kind) {
    return kind == DefectKind::kBlind || kind == DefectKind::kWeak || kind == DefectKind::kStrong;
}

#endif  // VELMARCON_CALIBRATE_DEFECT_H
