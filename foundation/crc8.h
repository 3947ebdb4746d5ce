#pragma once

#include <array>

#include "foundation/types.h"

// 8-bit checksums. Stateless; the seeded forms chain: the result over one piece
// is the seed for the next. No bytes give the seed back.
class CRC8 {
 public:
  // One entry a byte, for the reflected polynomial 0x07 (reversed: 0xE0).
  static const std::array<uint8, 256> CRC8Table;

  // CRC-8/ROHC when seeded with 0xFF.
  static uint8 crc(uint8 seed, const uint8* data, size_t len);
  // The complement of the above, seeded with 0xFF.
  static uint8 crc(const uint8* data, size_t len);

  // For memory that may change under the reader: every byte is read once, in
  // order.
  static uint8 crc(uint8 seed, const volatile uint8* data, size_t len);
  static uint8 crc(const volatile uint8* data, size_t len);

  // A second CRC-8, polynomial 0xD5, most significant bit first: CRC-8/DVB-S2
  // when seeded with 0.
  static uint8 atoll(uint8 seed, const uint8* data, size_t len);
};
