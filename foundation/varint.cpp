#include "foundation/varint.h"

gs::container<uint8> Varint::encode(uint64 value) {
  uint8 bytes[LONGEST];
  const size_t used = encode(value, bytes);
  gs::container<uint8> out;
  out.assign(bytes, used);
  return out;
}
