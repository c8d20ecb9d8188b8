// SPDX-License-Identifier: MIT
#include "system/file_mapping.h"

FileMapping::~FileMapping() = default;

bool FileMapping::Map(const std::string& /*path*/, std::uint64_t /*longest*/) {
    return false;
}

bool FileMapping::IsIntact() const {
    return damaged_ == 0;
}

bool FileMapping::PutZerosFrom(std::uintptr_t /*address*/) {
    return false;
}
