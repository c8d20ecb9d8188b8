// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_STATE_PLACE_H
#define VELMARCON_BATCH_STATE_PLACE_H

#include <string>

/// Where the states of runs are kept.
namespace state_place {

/// The folder of all states of this user, unless the command line names another one.
std::string UsualParent();

/// A short name for `text`, which may have any bytes.
std::string KeyOf(const std::string& text);

}  // namespace state_place

#endif  // VELMARCON_BATCH_STATE_PLACE_H
