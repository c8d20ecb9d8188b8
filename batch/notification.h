// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_NOTIFICATION_H
#define VELMARCON_BATCH_NOTIFICATION_H

#include <string>

/// Has the desktop show `text`, if it can: without notify-send nothing happens.
void Notify(const std::string& text);

#endif  // VELMARCON_BATCH_NOTIFICATION_H
