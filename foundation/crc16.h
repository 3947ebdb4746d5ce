#pragma once

#include <array>

#include "foundation/types.h"

// CRC-16/MODBUS, the trailer of packed schemas and data packets. Stateless; the
// seeded form chains. A null pointer or no bytes give the seed back.
class CRC16 {
 public:
  // One entry a byte, for the reflected polynomial 0x8005 (reversed: 0xA001).
  static const std::array<uint16, 256> crcTab;

  static uint16 crc(uint16 seed, const uint8* data, size_t len);
  static uint16 crc(const uint8* data, size_t len);  // seeded with 0xFFFF
};
