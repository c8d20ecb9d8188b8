// SPDX-License-Identifier: MIT
#ifndef VELMARCON_ERRORS_USAGE_TEXT_H
#define VELMARCON_ERRORS_USAGE_TEXT_H

/// Above and below the name and the version of the program.
constexpr const char* kBannerEdge = "###################\n";

/// Users know these lines by heart, so they stay unchanged, even though the default of -i is the current
/// folder rather than the folder of the executable. -c and -sb are not listed.
constexpr const char* kUsageText =
    "Program converts Leica M8 RAW+JPEG pairs to DNG.\n"
    "\n"
    "Usage: velmarcon.exe -par1 val1 -par2 val2 ...\n"
    "\n"
    "Par  [vals]/<opt>  meaning                           {defval}:\n"
    "\n"
    "-i   [folder/file] input                             {path to executable}\n"
    "-o   [folder]      output                            {input folder}\n"
    "-v                 verbose\n"
    "-r                 refresh: overwrite existing DNG\n"
    "-p                 preview image in DNG\n"
    "-b   <val>         blacklevel set                    {val=92}\n"
    "-l   <6bit>        lens exif fix                     {code from exif}\n"
    "-s                 sensor errors fix\n"
    "-sd                sensor darkfield creation\n"
    "-st                sensor test pixel line fix\n"
    "\n"
    "The manual, with examples for every option, is the file README.md.\n"
    "Copyright (c) 2026 the velmarcon authors, MIT License.\n"
    "\n";

#endif  // VELMARCON_ERRORS_USAGE_TEXT_H
