// SPDX-License-Identifier: MIT
#ifndef VELMARCON_PACKAGING_HELP_TEXT_H
#define VELMARCON_PACKAGING_HELP_TEXT_H

/// What the installed command says of itself, in the order of its manual page.
constexpr const char* kHelpText =
    "Turns the raw files of the Leica M8, set to record RAW+JPEG, into DNG files.\n"
    "\n"
    "Usage: velmarcon [-i input] [-o folder] [-v] [-r] [-p] [-b [value]] [-l [code]]\n"
    "                 [-s | -sd | -st | -sb] [-c]\n"
    "       velmarcon --help | --version | --where\n"
    "\n"
    "Options, each by itself (-v -r, not -vr):\n"
    "\n"
    "-i input           what to convert: a folder, a file, or a file's name without\n"
    "                   .RAW or .DNG; without -i: the RAW files of the current\n"
    "                   folder\n"
    "-o folder          where the DNGs go; it must exist; without -o: the folder of\n"
    "                   the input\n"
    "-v                 name each step while it is done\n"
    "-r                 refresh: replace DNGs that exist\n"
    "-p                 put a small preview into the DNG\n"
    "-b [value]         write the black level (92 if no value is given), or subtract\n"
    "                   a dark frame\n"
    "-l [code]          take lens data from lensdb.ini; the code, six digits, is for\n"
    "                   pictures of an uncoded lens\n"
    "-s                 repair defective columns and remove dark levels, with\n"
    "                   sensdb.ini\n"
    "-sd                make the dark levels in sensdb.ini from the one dark exposure\n"
    "                   that -i names\n"
    "-st                like -s, but paint the defective columns white, as a test\n"
    "-sb                like -s, but also estimate an offset for every row\n"
    "-c                 name another camera model, for settings of its own\n"
    "\n"
    "As the first argument:\n"
    "\n"
    "--help             this text\n"
    "--version          the version\n"
    "--where            the folder of lensdb.ini and sensdb.ini, which are yours to edit\n"
    "\n"
    "Example: velmarcon -i /media/card/DCIM/100LEICA -o ~/pictures/harbour -b\n"
    "\n"
    "More: man velmarcon, man velmarcon-batch.\n";

#endif  // VELMARCON_PACKAGING_HELP_TEXT_H
