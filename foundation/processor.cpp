#include "foundation/processor.h"

#if defined(BRINDLE_ARM_TARGET) && !defined(__APPLE__)
#include <asm/hwcap.h>
#include <sys/auxv.h>
#endif

namespace gs {

#if defined(BRINDLE_ARM_TARGET) && defined(__APPLE__)

bool multipliesCarryless() { return true; }
bool hasCrc32() { return true; }

#elif defined(BRINDLE_ARM_TARGET)

namespace {

bool has(unsigned long capability) {
  static const unsigned long capabilities = getauxval(AT_HWCAP);
  return (capabilities & capability) != 0;
}

}  // namespace

bool multipliesCarryless() { return has(HWCAP_PMULL); }
bool hasCrc32() { return has(HWCAP_CRC32); }

#elif !defined(__x86_64__)

bool multipliesCarryless() { return false; }

#endif

}  // namespace gs
