// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_RUN_TOOL_H
#define VELMARCON_SYSTEM_RUN_TOOL_H

#include <string>
#include <vector>

/// Runs the program `name`, which is looked up in the search path, in `folder`, without a shell and without
/// input; its output is not shown. Returns whether it could be started and ended with status 0.
[[nodiscard]] bool RunTool(const std::string& folder, const std::string& name,
                           const std::vector<std::string>& arguments);

#endif  // VELMARCON_SYSTEM_RUN_TOOL_H
