#include "foundation/crc16.h"

namespace {

constexpr std::array<uint16, 256> makeTable() {
  std::array<uint16, 256> table{};
  for (unsigned i = 0; i < 256; ++i) {
    unsigned crc = i;
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc & 1) * 0xA001;
    table[i] = static_cast<uint16>(crc);
  }
  return table;
}

}  // namespace

constinit const std::array<uint16, 256> CRC16::crcTab = makeTable();

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
