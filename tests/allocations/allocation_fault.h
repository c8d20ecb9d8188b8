// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_ALLOCATIONS_ALLOCATION_FAULT_H
#define VELMARCON_TESTS_ALLOCATIONS_ALLOCATION_FAULT_H

/// While the object exists, the `which`th call of operator new, counted from 1, fails as if there were no
/// memory left; if the fault is lasting, every later call fails as well. Only one object may exist at a time.
class AllocationFault {
  public:
    AllocationFault(long which, bool lasting);
    ~AllocationFault();
    AllocationFault(const AllocationFault&) = delete;
    AllocationFault& operator=(const AllocationFault&) = delete;
    AllocationFault(AllocationFault&&) = delete;
    AllocationFault& operator=(AllocationFault&&) = delete;

    /// The number of calls that have failed.
    long Failed() const;
};

#endif  // VELMARCON_TESTS_ALLOCATIONS_ALLOCATION_FAULT_H
