#pragma once

#include "foundation/container.h"

// Unsigned LEB128: 7 bits a byte, least significant group first; bit 7 is set
// on every byte but the last. A 64-bit value takes 1 to 10 bytes.
class Varint {
 public:
  static constexpr size_t LONGEST = 10;
  static constexpr uint8 MORE = 0x80;  // what the bytes before the last carry

  // The encoding of `value`; never empty.
  static gs::container<uint8> encode(uint64 value);
  // Writes the encoding to `out`, which has room for it, and answers its
  // length.
  static size_t encode(uint64 value, uint8* out) {
    size_t used = 0;
    for (; value >= MORE; value >>= 7) {
      out[used++] = static_cast<uint8>(value | MORE);
    }
    out[used++] = static_cast<uint8>(value);
    return used;
  }

  // REQUIRES: begin <= end.
  // Reads one varint from [begin, end) and stores how many bytes it took in
  // `consumed` (may be null): 0 only for an empty range. Reports no errors:
  // input cut off by `end` gives the bits seen so far, a tenth byte that asks
  // for another gives 0, and of a tenth byte only the lowest bit counts.
  static uint64 decode(const uint8* begin, const uint8* end, size_t* consumed);
  // The same from the first byte of `buf`.
  static uint64 decode(const gs::ConstBuf& buf, size_t* consumed) {
    return decode(buf.data, buf.data + buf.size, consumed);
  }
};
