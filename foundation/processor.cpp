#include "foundation/processor.h"

#if defined(BRINDLE_ARM_TARGET) && !defined(__APPLE__)
#include <sys/auxv.h>
#elif defined(__x86_64__)
#include <cpuid.h>
#endif

namespace gs {

#if defined(BRINDLE_ARM_TARGET) && defined(__APPLE__)

bool multipliesCarryless() { return true; }
bool hasSha256() { return true; }
bool hasCrc32() { return true; }

#elif defined(BRINDLE_ARM_TARGET)

namespace {

bool has(unsigned long capability) {
  static const unsigned long capabilities = getauxval(AT_HWCAP);
  return (capabilities & capability) != 0;
}

}  // namespace

bool multipliesCarryless() { return has(HWCAP_PMULL); }
bool hasSha256() { return has(HWCAP_SHA2); }
bool hasCrc32() { return has(HWCAP_CRC32); }

#elif defined(__x86_64__)

// Not every compiler's __builtin_cpu_supports() knows it.
bool hasSha256() {
  static const bool found = [] {
    unsigned eax = 0;
    unsigned ebx = 0;
    unsigned ecx = 0;
    unsigned edx = 0;
    return __builtin_cpu_supports("sse4.1") != 0 &&
           __get_cpuid_count(7, 0, &eax, &ebx, &ecx, &edx) != 0 &&
           (ebx & bit_SHA) != 0;
  }();
  return found;
}

#else

bool multipliesCarryless() { return false; }
bool hasSha256() { return false; }

#endif

}  // namespace gs
