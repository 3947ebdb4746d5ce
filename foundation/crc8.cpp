#include "foundation/crc8.h"

#include "foundation/crc_table.h"

constinit const std::array<uint8, 256> CRC8::CRC8Table =
    makeCrcTable<uint8>(0xE0);

uint8 CRC8::crc(uint8 seed, const uint8* data, size_t len) {
  return crc(seed, static_cast<const volatile uint8*>(data), len);
}

uint8 CRC8::crc(const uint8* data, size_t len) {
  return crc(static_cast<const volatile uint8*>(data), len);
}

uint8 CRC8::crc(uint8 seed, const volatile uint8* data, size_t len) {
  for (size_t i = 0; i < len; ++i) seed = CRC8Table[seed ^ data[i]];
  return seed;
}

uint8 CRC8::crc(const volatile uint8* data, size_t len) {
  return static_cast<uint8>(~crc(0xFF, data, len));
}

uint8 CRC8::atoll(uint8 seed, const uint8* data, size_t len) {
  unsigned crc = seed;
  for (size_t i = 0; i < len; ++i) {
    crc ^= data[i];
    for (int bit = 0; bit < 8; ++bit) {
      crc = (crc << 1 ^ (crc >> 7) * 0xD5) & 0xFF;
    }
  }
  return static_cast<uint8>(crc);
}
