// SPDX-License-Identifier: MIT
#include "input/read_input_data.h"

int ReadInputData::ProcessFile(const std::string& folder, const std::string& base, bool verbose,
                               bool subtractBia) {
    Verbose = verbose;
    SubtractBia = subtractBia;
    Folder = folder;
    RawFileName = base + ".RAW";
    BiaFileName = base + ".BIA";
    JpgFileName = base + ".JPG";

    if (const int error = LoadJPGExif(); error != 0) {
        return error;
    }
    return LoadRawFile();
}
