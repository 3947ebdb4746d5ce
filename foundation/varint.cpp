#include "foundation/varint.h"

gs::container<uint8> Varint::encode(uint64 value) {
  uint8 bytes[LONGEST];
  const size_t used = encode(value, bytes);
  gs::container<uint8> out;
  out.assign(bytes, used);
  return out;
}

uint64 Varint::decode(const uint8* begin, const uint8* end, size_t* consumed) {
  const size_t available = static_cast<size_t>(end - begin);
  uint64 value = 0;
  size_t used = 0;
  bool more = true;
  while (more && used < available && used < LONGEST) {
    const uint8 byte = begin[used];
    value |= static_cast<uint64>(byte & 0x7F) << (7 * used);
    more = (byte & MORE) != 0;
    ++used;
  }
  if (consumed != nullptr) *consumed = used;
  return more && used == LONGEST ? 0 : value;
}
