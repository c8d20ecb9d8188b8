// SPDX-License-Identifier: MIT
#include <csignal>
#include <cstddef>

#include "app/run_program.h"
#include "system/pixel_memory.h"
#include "system/sandbox.h"
#include "system/standard_streams.h"

namespace {

/// A failed write is either reported or unimportant; it must not kill the program half-way through a card.
void IgnoreWriteSignals() {
#if defined(SIGXFSZ)
    (void)std::signal(SIGXFSZ, SIG_IGN);  // the file has reached its size limit
#endif
#if defined(SIGPIPE)
    (void)std::signal(SIGPIPE, SIG_IGN);  // nobody reads the output any more
#endif
}

}  // namespace

int main(int argc, char* argv[]) {
    IgnoreWriteSignals();
    FillMissingStandardStreams();
    pixel_memory::RetainFreedMemory();
    return RunProgram({argv, static_cast<std::size_t>(argc)}, EnterSandbox);
}
