#pragma once

#include "foundation/container.h"

// Unsigned LEB128: 7 bits a byte, least significant group first; bit 7 is set
// on every byte but the last. A 64-bit value takes 1 to 10 bytes.
class Varint {
 public:
  // The encoding of `value`; never empty.
  static gs::container<uint8> encode(uint64 value);

  // REQUIRES: begin <= end.
  // Reads one varint from [begin, end) and stores how many bytes it took in
  // `consumed` (may be null): 0 only for an empty range. Reports no errors:
  // input cut off by `end` gives the bits seen so far, a tenth byte that asks
  // for another gives 0, and of a tenth byte only the lowest bit counts.
  static uint64 decode(const uint8* begin, const uint8* end, size_t* consumed);
  // The same from the first byte of `buf`.
  static uint64 decode(const gs::ConstBuf& buf, size_t* consumed);
};
