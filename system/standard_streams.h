// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_STANDARD_STREAMS_H
#define VELMARCON_SYSTEM_STANDARD_STREAMS_H

/// Opens a harmless replacement for each standard stream that the program was started without. Otherwise the
/// next file to be opened would get that stream's number, and printed text would end up in a DNG. Called
/// before any file is opened.
void FillMissingStandardStreams();

/// Whether a person sees what is printed to standard error.
[[nodiscard]] bool ErrorsGoToTerminal();

#endif  // VELMARCON_SYSTEM_STANDARD_STREAMS_H
