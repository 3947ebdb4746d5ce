#include "foundation/varint.h"

namespace {

constexpr uint8 MORE = 0x80;
constexpr uint64 GROWTH_STEP = 4;
constexpr size_t LONGEST = 10;

void push(gs::container<uint8>& out, uint64 byte) {
  if (out.size == out.capacity) out.reserve(out.size + GROWTH_STEP);
  out.emplace(static_cast<uint8>(byte));
}

}  // namespace

gs::container<uint8> Varint::encode(uint64 value) {
  gs::container<uint8> out;
  for (; value >= MORE; value >>= 7) push(out, (value & 0x7F) | MORE);
  push(out, value);
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

uint64 Varint::decode(const gs::ConstBuf& buf, size_t* consumed) {
  return decode(buf.data, buf.data + buf.size, consumed);
}
