#include "foundation/crc16.h"

#include "foundation/crc_table.h"

constinit const std::array<uint16, 256> CRC16::crcTab =
    makeCrcTable<uint16>(0xA001);

uint16 CRC16::crc(uint16 seed, const uint8* data, size_t len) {
  if (data == nullptr) return seed;
  for (size_t i = 0; i < len; ++i) {
    seed = static_cast<uint16>(seed >> 8 ^ crcTab[(seed ^ data[i]) & 0xFF]);
  }
  return seed;
}

uint16 CRC16::crc(const uint8* data, size_t len) {
  return crc(0xFFFF, data, len);
}
