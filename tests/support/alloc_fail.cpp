#include "tests/support/alloc_fail.h"

#include <new>

namespace {

thread_local uint64 left = 0;  // until the failure; 0 behind it, and when off
thread_local bool lasts = false;
thread_local bool reached = false;

bool fails() noexcept {
  if (left == 0) return lasts && reached;
  if (--left != 0) return false;
  return reached = true;
}

}  // namespace

void alloc_fail::arm(uint64 nth, bool lasting) noexcept {
  left = nth;
  lasts = lasting;
  reached = false;
}

bool alloc_fail::disarm() noexcept {
  const bool was = reached;
  arm(0, false);
  return was;
}

// The linker sends calls of f to __wrap_f and those of __real_f to f. The
// operators go by their encoded names: new, new[], and both with nothrow.
#define WRAP(name, onFailure, Parameters, arguments) \
  void* __real_##name Parameters;                    \
  void* __wrap_##name Parameters {                   \
    if (fails()) onFailure;                          \
    return __real_##name arguments;                  \
  }

// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
using No = const std::nothrow_t&;
WRAP(malloc, return nullptr, (size_t n), (n))
WRAP(calloc, return nullptr, (size_t n, size_t size), (n, size))
WRAP(realloc, return nullptr, (void* old, size_t n), (old, n))
WRAP(_Znwm, throw std::bad_alloc(), (size_t n), (n))
WRAP(_Znam, throw std::bad_alloc(), (size_t n), (n))
WRAP(_ZnwmRKSt9nothrow_t, return nullptr, (size_t n, No tag), (n, tag))
WRAP(_ZnamRKSt9nothrow_t, return nullptr, (size_t n, No tag), (n, tag))
}
// NOLINTEND(bugprone-reserved-identifier)
