// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PASSED_OVER_H
#define VELMARCON_BATCH_PASSED_OVER_H

#include "batch/picture_search.h"
#include "batch/tally.h"

/// What a search found but did not take for a picture. Nothing of it is passed over in silence.
namespace passed_over {

/// Prints the first names of each sort. JPEGs without a RAW file, which may be all that the camera was asked
/// for, are left out with `quiet`.
void Tell(const FoundPictures& found, bool quiet);

/// Writes all of them, and the folders that were not searched, to the report.
void Note(const FoundPictures& found, Tally& tally);

/// Whether the search could look everywhere, found all that was asked for, and passed over nothing that is
/// likely to be a picture; `accept_damaged` allows the latter.
bool AllWasFound(const FoundPictures& found, bool accept_damaged);

/// Says that there was no picture at all. Returns the status for that.
[[nodiscard]] int RefuseNothing();

}  // namespace passed_over

#endif  // VELMARCON_BATCH_PASSED_OVER_H
