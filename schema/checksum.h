#pragma once

#include "foundation/crc32.h"
#include "foundation/safe_string.h"

namespace Brindle {

// A CRC-32/JAMCRC continued from piece to piece, without lengths in between.
class Checksum {
 public:
  Checksum() = default;
  explicit Checksum(uint32 before) : crc(before) {}

  uint32 value() const { return crc; }

  void add(const void* data, size_t n) {
    crc = CRC32::crc(crc, static_cast<const uint8*>(data), n, CRC32::POLY);
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
  uint32 crc = 0xFFFFFFFF;
};

}  // namespace Brindle
