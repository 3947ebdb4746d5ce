#pragma once

#include <array>

#include "foundation/types.h"

// CRC-16/MODBUS, the trailer of packed schemas and data packets. Stateless; the
// seeded form chains. A null pointer or no bytes give the seed back.
class CRC16 {
 public:
  // The reversed (least significant bit first) form of 0x8005.
  static constexpr uint16 POLY = 0xA001;
  // One entry a byte.
  static const std::array<uint16, 256> crcTab;

  static uint16 crc(uint16 seed, const uint8* data, size_t len);
  static uint16 crc(const uint8* data, size_t len);  // seeded with 0xFFFF
};
