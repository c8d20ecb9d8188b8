// SPDX-License-Identifier: MIT
#include "tests/allocations/allocation_fault.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

/// Controls the next calls of operator new. The program has only one thread.
struct Plan {
    bool armed = false;
    bool lasting = false;
    long until_failure = 0;  ///< calls; the call fails at 0
    long failed = 0;
};
Plan g_plan;  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables): operator new needs it

bool MustFail() {
    if (!g_plan.armed) {
        return false;
    }
    const bool fails = g_plan.lasting ? g_plan.until_failure <= 1 : g_plan.until_failure == 1;
    --g_plan.until_failure;
    g_plan.failed += fails ? 1 : 0;
    return fails;
}

}  // namespace

// Replaces the library's operator new in the whole test program; its other forms call these two.
void* operator new(std::size_t size) {
    void* const memory = MustFail() ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

AllocationFault::AllocationFault(long which, bool lasting) {
    g_plan = {.armed = true, .lasting = lasting, .until_failure = which};
}

AllocationFault::~AllocationFault() {
    g_plan.armed = false;
}

// A member, so that it is only called while a fault is active.
// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
long AllocationFault::Failed() const {
    return g_plan.failed;
}
