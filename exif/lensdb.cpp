// SPDX-License-Identifier: MIT
#include "exif/lensdb.h"

#include <algorithm>
#include <cstdlib>

#include "base/truncate.h"
#include "system/ini_file.h"
#include "system/path_names.h"

namespace {

double ToNumber(const char* text) {
    return std::strtod(text, nullptr);
}

std::vector<std::int32_t> ReadApertures(const ini_file::File& ini, const char* section, const char* key) {
    ini_file::File::TNamesDepend values;
    ini.GetAllValues(section, key, values);
    std::vector<std::int32_t> apertures;
    for (const auto& value : values) {
        apertures.push_back(Truncate<std::int32_t>(ToNumber(value.pItem) * lensdb::kApertureUnits + 0.5));
    }
    std::sort(apertures.begin(), apertures.end());
    return apertures;
}

lensdb::Lensdbtype ReadLens(const ini_file::File& ini, const char* section) {
    lensdb::Lensdbtype lens;
    ini_file::File::TNamesDepend keys;
    ini.GetAllKeys(section, keys);
    for (const auto& entry : keys) {
        const char* key = entry.pItem;
        if (ini_file::SameName(key, "Maker")) {
            lens.Maker = ini.GetValue(section, key, "");
        } else if (ini_file::SameName(key, "Model")) {
            lens.Model = ini.GetValue(section, key, "");
        } else if (ini_file::SameName(key, "SerialNo")) {
            lens.SerialNo = ini.GetValue(section, key, "");
        } else if (ini_file::SameName(key, "FocalLength")) {
            lens.FocalLength = ToNumber(ini.GetValue(section, key, ""));
        } else if (ini_file::SameName(key, "Aperture")) {
            lens.Aperture = ReadApertures(ini, section, key);
        }
    }
    return lens;
}

}  // namespace

lensdb::lensdb(const std::string& folder) : DatabaseFile(folder + path_names::kLensDatabase) {}

int lensdb::LoadLensData() {
    ini_file::File ini;
    ini.SetMultiKey(true);
    if (const int error = ini_file::Load(DatabaseFile, ini); error != SI_OK) {
        return error;
    }
    ini_file::File::TNamesDepend sections;
    ini.GetAllSections(sections);
    for (const auto& section : sections) {
        Lenses[section.pItem] = ReadLens(ini, section.pItem);
    }
    return 0;
}
