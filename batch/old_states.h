// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_OLD_STATES_H
#define VELMARCON_BATCH_OLD_STATES_H

#include <string>

/// Removes from `parent` the states of runs that came to their end more than 90 days ago; that called `own`
/// stays.
void RemoveOldStates(const std::string& parent, const std::string& own);

#endif  // VELMARCON_BATCH_OLD_STATES_H
