#pragma once

#include "foundation/types.h"

// Lets allocations of this thread fail: those of all code that is linked with
// `failing_allocations` (see CMakeLists.txt). What libc, libstdc++.so and the
// host take for themselves is not concerned.
namespace alloc_fail {

// From now on the n-th allocation fails, n counting from 1, and if `lasting`
// all that come after it.
void arm(uint64 nth, bool lasting) noexcept;
// Ends that, and answers whether the n-th was reached.
bool disarm() noexcept;

}  // namespace alloc_fail
