// SPDX-License-Identifier: MIT
#ifndef VELMARCON_APP_REACH_H
#define VELMARCON_APP_REACH_H

#include <string>

#include "app/run_settings.h"
#include "system/sandbox.h"

/// The files and folders that a run with these settings needs; `sensor_database` is the path of sensdb.ini.
/// Links are resolved now: if one is changed later, its new target is out of reach.
Reach ReachOf(const RunSettings& settings, const std::string& sensor_database);

#endif  // VELMARCON_APP_REACH_H
