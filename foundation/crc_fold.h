#pragma once

#include "foundation/types.h"

namespace gs {

// CRC-32 with CRC32::POLY and CRC-16 by multiplication of polynomials.
// REQUIRES: multipliesCarryless().
uint32 foldCrc32(uint32 crc, const uint8* data, size_t len);
uint16 foldCrc16(uint16 crc, const uint8* data, size_t len);

}  // namespace gs
