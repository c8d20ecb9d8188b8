// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_STANDARD_STREAMS_H
#define VELMARCON_SYSTEM_STANDARD_STREAMS_H

/// Puts something harmless in place of each standard stream that the program was started without. The next
/// file to be opened would take its number, and what is printed would end up in a finished picture. Called
/// before any file is opened.
void FillMissingStandardStreams();

/// Whether a person sees what is printed to standard error.
[[nodiscard]] bool ErrorsGoToTerminal();

#endif  // VELMARCON_SYSTEM_STANDARD_STREAMS_H
