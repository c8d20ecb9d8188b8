// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_BATCH_RUN_H
#define VELMARCON_BATCH_BATCH_RUN_H

#include <functional>
#include <span>
#include <string>

/// The status that a run ends with; 128 and the number of the signal when it was interrupted.
namespace batch_status {

constexpr int kDone = 0;
constexpr int kSomeFailed = 1;
constexpr int kUsage = 2;
constexpr int kNotBegun = 3;
constexpr int kSignal = 128;

}  // namespace batch_status

/// Where the program stands, and what belongs to it.
struct Installation {
    std::string program;                     ///< path of the program itself
    std::function<std::string()> databases;  ///< prepares the folder of lensdb.ini and sensdb.ini, and
                                             ///< returns it with its separator
};

/// velmarcon-batch. `arguments` are those of the command line, the program's name not among them. Returns the
/// exit status.
int RunBatch(std::span<const std::string> arguments, const Installation& installation);

#endif  // VELMARCON_BATCH_BATCH_RUN_H
