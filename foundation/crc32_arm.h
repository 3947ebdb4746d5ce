#pragma once

#include "foundation/processor.h"
#include "foundation/types.h"

#ifdef BRINDLE_ARM_TARGET

namespace gs {

// CRC-32 with CRC32::POLY by the instructions for it, which beat folding until
// there is enough to multiply side by side. REQUIRES: hasCrc32().
uint32 instructedCrc32(uint32 crc, const uint8* data, size_t len);

}  // namespace gs

#endif
