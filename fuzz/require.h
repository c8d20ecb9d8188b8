// SPDX-License-Identifier: MIT
#ifndef VELMARCON_FUZZ_REQUIRE_H
#define VELMARCON_FUZZ_REQUIRE_H

/// Ends the process by a signal, which the fuzzer reports as a crash, unless `holds`. `property`, what should
/// have been true, is printed to standard error.
void Require(bool holds, const char* property);

#endif  // VELMARCON_FUZZ_REQUIRE_H
