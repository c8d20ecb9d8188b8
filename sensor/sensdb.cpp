// SPDX-License-Identifier: MIT
#include "sensor/sensdb.h"

sensdb::sensdb(const std::string& folder) : DatabaseFile(folder + "sensdb.ini") {}
