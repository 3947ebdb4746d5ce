#include "foundation/crc32.h"

#include "foundation/crc_definition.h"
#include "foundation/crc_fold.h"
#include "foundation/processor.h"

uint32 CRC32::crc(uint32 seed, const uint8* data, size_t len, uint32 poly) {
  if (poly == POLY && gs::multipliesCarryless()) {
    return gs::foldCrc32(seed, data, len);
  }
  return crcByDefinition(seed, data, len, poly);
}

uint32 CRC32::crc(const uint8* data, size_t len, uint32 poly) {
  return crc(0xFFFFFFFF, data, len, poly);
}
