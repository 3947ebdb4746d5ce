#include "foundation/crc16.h"

#include "foundation/crc_fold.h"
#include "foundation/crc_table.h"
#include "foundation/processor.h"

constinit const std::array<uint16, 256> CRC16::crcTab = makeCrcTable(POLY);

uint16 CRC16::crc(uint16 seed, const uint8* data, size_t len) {
  if (data == nullptr) return seed;
  if (gs::multipliesCarryless()) return gs::foldCrc16(seed, data, len);
  for (size_t i = 0; i < len; ++i) {
    seed = static_cast<uint16>(seed >> 8 ^ crcTab[(seed ^ data[i]) & 0xFF]);
  }
  return seed;
}

uint16 CRC16::crc(const uint8* data, size_t len) {
  return crc(0xFFFF, data, len);
}
