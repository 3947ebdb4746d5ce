#include "foundation/buffer.h"

#include <cstring>

namespace Brindle {

bool appendToBuffer(gs::container<uint8>& buf, const void* src, size_t n) {
  if (n == 0) return true;
  if (src == nullptr) return false;
  if (n > buf.capacity - buf.size) {
    if (n > SIZE_MAX - buf.size) throw std::bad_alloc();
    buf.reserve(buf.size + n);
  }
  std::memcpy(buf.data + buf.size, src, n);
  buf.size += n;
  return true;
}

void reserveAhead(gs::container<uint8>& buf) {
  // The longest small append: one varint.
  constexpr uint64 SPARE = 10;
  if (buf.capacity - buf.size < SPARE) buf.reserve(2 * buf.size + 64);
}

bool extractFromBuffer(const gs::ConstBuf& buf, size_t& offset, void* dst,
                       uint64 n) {
  gs::ConstBuf view;
  if (!extractView(buf, offset, view, n)) return false;
  if (n != 0) std::memcpy(dst, view.data, n);
  return true;
}

bool extractView(const gs::ConstBuf& buf, size_t& offset, gs::ConstBuf& out,
                 uint64 n) {
  // Compared with what is left: offset + n could wrap around.
  if (offset > buf.size || n > buf.size - offset) return false;
  out = {buf.data + offset, n};
  offset += n;
  return true;
}

}  // namespace Brindle
