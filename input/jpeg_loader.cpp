// SPDX-License-Identifier: MIT
#include <cstdint>
#include <cstdio>
#include <limits>
#include <vector>

#include "app/error_codes.h"
#include "input/input_file.h"
#include "input/read_input_data.h"

int ReadInputData::LoadJPGExif() {
    if (Verbose) {
        std::printf("Reading %s...", JpgFileName.c_str());
    }
    InputFile file;
    if (!file.Open(Folder + JpgFileName)) {
        return kJpgNotFound;
    }
    // The offsets in a JPEG's EXIF block have 32 bits; no JPEG is longer than they reach.
    if (file.size() > std::numeric_limits<std::uint32_t>::max()) {
        return kExifDamaged;
    }
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(file.size()));
    file.ReadStart(bytes);
    if (Exif.parseFrom(bytes.data(), static_cast<unsigned int>(bytes.size())) != 0) {
        return kExifDamaged;
    }
    if (Verbose) {
        std::printf("Done!\n");
    }
    return 0;
}
