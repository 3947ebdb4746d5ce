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
  size_t consumed = 0;
  value = Varint::decode(buf.from(offset), &consumed);
  offset += consumed;
  return consumed != 0;
}

}  // namespace Brindle
