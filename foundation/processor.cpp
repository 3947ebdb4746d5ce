#include "foundation/processor.h"

#if defined(BRINDLE_ARM_TARGET) && defined(__linux__)
#include <asm/hwcap.h>
#include <sys/auxv.h>
#endif

namespace gs {

#if defined(__x86_64__)

#elif defined(BRINDLE_ARM_TARGET) && defined(__APPLE__)

bool multipliesCarryless() { return true; }

#elif defined(BRINDLE_ARM_TARGET) && defined(__linux__)

namespace {

bool has(unsigned long capability) {
  static const unsigned long capabilities = getauxval(AT_HWCAP);
  return (capabilities & capability) != 0;
}

}  // namespace

bool multipliesCarryless() { return has(HWCAP_PMULL); }

#else

bool multipliesCarryless() { return false; }

#endif

}  // namespace gs
