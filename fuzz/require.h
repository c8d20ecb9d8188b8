// SPDX-License-Identifier: MIT
#ifndef VELMARCON_FUZZ_REQUIRE_H
#define VELMARCON_FUZZ_REQUIRE_H

/// Ends the process by a signal, which the fuzzer takes for a crash, unless `holds`. `property` says on
/// standard error what should have been so.
void Require(bool holds, const char* property);

#endif  // VELMARCON_FUZZ_REQUIRE_H
