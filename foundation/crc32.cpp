#include "foundation/crc32.h"

#include "foundation/crc32_arm.h"
#include "foundation/crc_definition.h"
#include "foundation/crc_fold.h"
#include "foundation/crc_table.h"
#include "foundation/processor.h"

namespace {

constexpr std::array<uint32, 256> TABLE = makeCrcTable(CRC32::POLY);

uint32 crcByTable(uint32 state, const uint8* data, size_t len) {
  for (size_t i = 0; i < len; ++i) {
    state = state >> 8 ^ TABLE[(state ^ data[i]) & 0xFF];
  }
  return state;
}

}  // namespace

uint32 CRC32::crc(uint32 seed, const uint8* data, size_t len, uint32 poly) {
  if (poly != POLY) return crcByDefinition(seed, data, len, poly);
  const bool folds = gs::multipliesCarryless();
#ifdef BRINDLE_ARM_TARGET
  if (gs::hasCrc32() && (len < 128 || !folds)) {
    return gs::instructedCrc32(seed, data, len);
  }
#endif
  return folds ? gs::foldCrc32(seed, data, len) : crcByTable(seed, data, len);
}

uint32 CRC32::crc(const uint8* data, size_t len, uint32 poly) {
  return crc(0xFFFFFFFF, data, len, poly);
}
