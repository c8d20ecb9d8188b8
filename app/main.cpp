// SPDX-License-Identifier: MIT
#include <cstddef>

#include "app/run_program.h"
#include "system/pixel_memory.h"
#include "system/posix/write_signals.h"
#include "system/sandbox.h"
#include "system/standard_streams.h"

int main(int argc, char* argv[]) {
    IgnoreWriteSignals();
    FillMissingStandardStreams();
    pixel_memory::RetainFreedMemory();
    return RunProgram({argv, static_cast<std::size_t>(argc)}, EnterSandbox);
}
