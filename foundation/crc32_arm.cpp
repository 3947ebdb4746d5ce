#include "foundation/crc32_arm.h"

#ifdef BRINDLE_ARM_TARGET

#include <arm_acle.h>

#include "foundation/load_number.h"

namespace gs {

BRINDLE_ARM_TARGET("+crc")
uint32 instructedCrc32(uint32 crc, const uint8* data, size_t len) {
  for (; len >= 8; data += 8, len -= 8) {
    crc = __crc32d(crc, loadNumber<uint64>(data));
  }
  if ((len & 4) != 0) {
    crc = __crc32w(crc, loadNumber<uint32>(data));
    data += 4;
  }
  if ((len & 2) != 0) {
    crc = __crc32h(crc, loadNumber<uint16>(data));
    data += 2;
  }
  return (len & 1) != 0 ? __crc32b(crc, *data) : crc;
}

}  // namespace gs

#endif
