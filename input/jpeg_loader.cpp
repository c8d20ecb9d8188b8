// SPDX-License-Identifier: MIT
#include <cstdint>
#include <vector>

#include "base/error_codes.h"
#include "errors/step_lines.h"
#include "input/read_input_data.h"
#include "system/input_file.h"

int ReadInputData::LoadJPGExif() {
    step_lines::Begin(Verbose, "Reading", JpgFileName.c_str());
    InputFile file;
    if (!file.Open(Folder + JpgFileName)) {
        return kJpgNotFound;
    }
    // The camera's JPEGs have a tenth of this size; a much larger file is not one of them and is not read
    // into memory.
    constexpr std::uint64_t longest_jpeg = 64ULL * 1024 * 1024;
    if (file.size() > longest_jpeg) {
        return kExifDamaged;
    }
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(file.size()));
    if (!file.ReadStart(bytes)) {
        return kJpgUnreadable;
    }
    if (Exif.parseFrom(bytes.data(), static_cast<unsigned int>(bytes.size())) != 0) {
        return kExifDamaged;
    }
    step_lines::End(Verbose);
    return 0;
}
