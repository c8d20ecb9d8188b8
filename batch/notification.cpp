// SPDX-License-Identifier: MIT
#include "batch/notification.h"

#include "system/child_process.h"

void Notify(const std::string& text) {
    ChildStart start;
    start.arguments = {"notify-send", "velmarcon-batch", text};
    std::string printed;
    (void)RunForOutput(start, printed);
}
