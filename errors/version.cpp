// SPDX-License-Identifier: MIT
#include "errors/version.h"

const char* const kVersion = VELMARCON_VERSION;
