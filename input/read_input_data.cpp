// SPDX-License-Identifier: MIT
#include "input/read_input_data.h"

#include "system/path_names.h"

int ReadInputData::ProcessFile(const std::string& folder, const std::string& base, bool verbose,
                               bool subtractBia) {
    Verbose = verbose;
    SubtractBia = subtractBia;
    Folder = folder;
    RawFileName = path_names::WithExtension(base, path_names::kRawExtension);
    BiaFileName = path_names::WithExtension(base, path_names::kDarkFrameExtension);
    JpgFileName = path_names::WithExtension(base, path_names::kJpegExtension);

    if (const int error = LoadJPGExif(); error != 0) {
        return error;
    }
    return LoadRawFile();
}
