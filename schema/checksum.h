#pragma once

#include <cstring>

#include "foundation/crc32.h"
#include "foundation/safe_string.h"

namespace Brindle {

// A CRC-32/JAMCRC continued from piece to piece, without lengths in between.
// Small pieces are gathered first: a checksum takes long runs best.
class Checksum {
 public:
  Checksum() = default;
  explicit Checksum(uint32 before) : crc(before) {}

  uint32 value() {
    if (count != 0) absorb(pending, count);
    count = 0;
    return crc;
  }

  void add(const void* data, size_t n) {
    if (n > sizeof pending - count) {
      value();
      if (n > sizeof pending) return absorb(data, n);
    }
    if (n != 0) std::memcpy(pending + count, data, n);
    count += n;
  }
  // The bytes of a text, zero bytes included.
  void add(const SafeString& text) { add(text.bytes().data, text.length()); }
  // A number, code or flag as its little-endian bytes.
  template <class Number>
  void add(const Number& number) {
    static_assert(std::is_trivially_copyable_v<Number>);
    add(&number, sizeof number);
  }

 private:
  void absorb(const void* data, size_t n) {
    crc = CRC32::crc(crc, static_cast<const uint8*>(data), n, CRC32::POLY);
  }

  uint32 crc = 0xFFFFFFFF;
  size_t count = 0;
  uint8 pending[128];
};

}  // namespace Brindle
