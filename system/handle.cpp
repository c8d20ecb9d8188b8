// SPDX-License-Identifier: MIT
#include "system/handle.h"

#include <utility>

Handle& Handle::operator=(Handle&& other) noexcept {
    if (this != &other) {
        Close();
        native_ = other.Release();
    }
    return *this;
}

Handle::Native Handle::Release() {
    return std::exchange(native_, kNone);
}
