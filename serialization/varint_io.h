#pragma once

#include "foundation/buffer.h"
#include "foundation/varint.h"

// Varints inside byte buffers, for the writers and readers of records.
namespace Brindle {

inline bool appendVarint(gs::container<uint8>& out, uint64 value) {
  reserveAhead(out, Varint::LONGEST);
  out.size += Varint::encode(value, out.data + out.size);
  return true;
}

// False when no byte is left; a varint that is cut off gives the bits there
// are. REQUIRES: offset <= buf.size.
inline bool extractVarint(const gs::ConstBuf& buf, size_t& offset,
                          uint64& value) {
  // Most take one byte or two.
  const gs::ConstBuf rest = buf.from(offset);
  size_t consumed = 0;
  if (rest.size >= 1 && rest.data[0] < Varint::MORE) {
    consumed = 1;
    value = rest.data[0];
  } else if (rest.size >= 2 && rest.data[1] < Varint::MORE) {
    consumed = 2;
    value = (rest.data[0] & 0x7FU) | unsigned{rest.data[1]} << 7;
  } else {
    value = Varint::decode(rest, &consumed);
  }
  offset += consumed;
  return consumed != 0;
}

}  // namespace Brindle
