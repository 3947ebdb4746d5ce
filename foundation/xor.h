#pragma once

#include "foundation/types.h"

// Exclusive-or over a range; 0 for a null pointer or an empty range.
class XOR {
 public:
  static uint8 xor8(const uint8* data, size_t len);
  static uint32 xor32(const uint32* data, size_t count);  // count of words
};
