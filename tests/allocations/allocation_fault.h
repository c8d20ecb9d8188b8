// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_ALLOCATIONS_ALLOCATION_FAULT_H
#define VELMARCON_TESTS_ALLOCATIONS_ALLOCATION_FAULT_H

/// While it lives, the `which`th call of operator new, counted from 1, fails as it does when there is no
/// memory; a lasting fault makes every later call fail, too. One at a time.
class AllocationFault {
  public:
    AllocationFault(long which, bool lasting);
    ~AllocationFault();
    AllocationFault(const AllocationFault&) = delete;
    AllocationFault& operator=(const AllocationFault&) = delete;
    AllocationFault(AllocationFault&&) = delete;
    AllocationFault& operator=(AllocationFault&&) = delete;

    /// The calls that have failed.
    long Failed() const;
};

#endif  // VELMARCON_TESTS_ALLOCATIONS_ALLOCATION_FAULT_H
