#pragma once

#include "foundation/types.h"

// Any reflected 32-bit CRC without a final inversion, all but that of POLY bit
// by bit. Stateless; the seeded form chains. No bytes give the seed back.
class CRC32 {
 public:
  // The reversed (least significant bit first) form of 0x04C11DB7: with it the
  // unseeded form is CRC-32/JAMCRC, the complement of the common CRC-32. Every
  // 32-bit checksum of blocks, records and hashes is this one.
  static constexpr uint32 POLY = 0xEDB88320;

  // `poly` is the reversed form of the polynomial.
  static uint32 crc(uint32 seed, const uint8* data, size_t len, uint32 poly);
  // Seeded with 0xFFFFFFFF.
  static uint32 crc(const uint8* data, size_t len, uint32 poly);
};
