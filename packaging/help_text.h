// SPDX-License-Identifier: MIT
#ifndef VELMARCON_PACKAGING_HELP_TEXT_H
#define VELMARCON_PACKAGING_HELP_TEXT_H

/// The text of --help: options in the order of the manual page.
constexpr const char* kHelpText =
    "Turns the raw files of the Leica M8, set to RAW+JPEG, into DNG files.\n"
    "\n"
    "Usage: velmarcon [-i input] [-o folder] [-v] [-r] [-p] [-b [value]] [-l [code]]\n"
    "                 [-s | -sd | -st | -sb] [-c]\n"
    "       velmarcon --help | --version | --where\n"
    "\n"
    "Options (write each one separately: -v -r, not -vr):\n"
    "\n"
    "-i input           a folder, a file, or a file's name without .RAW or .DNG;\n"
    "                   default: the RAW files in the current folder\n"
    "-o folder          the folder for the DNGs, which must exist; default: the\n"
    "                   folder of the input\n"
    "-v                 print each step\n"
    "-r                 refresh: replace existing DNGs\n"
    "-p                 put a small preview into the DNG\n"
    "-b [value]         write the black level (default 92), or subtract the dark\n"
    "                   frame\n"
    "-l [code]          take lens data from lensdb.ini; the code, six digits, is for\n"
    "                   pictures taken with an uncoded lens\n"
    "-s                 repair defective columns and subtract dark levels, using\n"
    "                   sensdb.ini\n"
    "-sd                make the dark reference in sensdb.ini from the one dark\n"
    "                   exposure that -i names\n"
    "-st                like -s, but paint the listed rows white, as a test\n"
    "-sb                like -s, but also estimate an offset for every row\n"
    "-c                 write another camera model, so that raw developers keep\n"
    "                   separate settings\n"
    "\n"
    "As the first argument:\n"
    "\n"
    "--help             this text\n"
    "--version          the version\n"
    "--where            the data folder, with lensdb.ini and sensdb.ini\n"
    "\n"
    "Example: velmarcon -i /media/card/DCIM/100LEICA -o ~/pictures/harbour -b\n"
    "\n"
    "See also: man velmarcon, man velmarcon-batch, man velmarcon-calibrate.\n";

#endif  // VELMARCON_PACKAGING_HELP_TEXT_H
