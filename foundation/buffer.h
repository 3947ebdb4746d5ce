#pragma once

#include <cstring>

#include "foundation/container.h"

// The write and bounded-read primitives of all codecs, and their only bounds
// checks: whatever is written into or read out of a block passes through here.
namespace Brindle {

// What the appends below do when they are out of room.
void growBy(gs::container<uint8>& buf, size_t n);     // to exactly size + n
void growAhead(gs::container<uint8>& buf, size_t n);  // to twice as much

// Appends `n` bytes from `src`. Without spare room the storage grows to exactly
// size + n. False, with `buf` unchanged, for a null `src` unless n is 0.
// Throws std::bad_alloc, with `buf` unchanged, when memory runs out.
// REQUIRES: `src` is not inside `buf`.
inline bool appendToBuffer(gs::container<uint8>& buf, const void* src,
                           size_t n) {
  if (n == 0) return true;
  if (src == nullptr) return false;
  if (n > buf.capacity - buf.size) growBy(buf, n);
  std::memcpy(buf.data + buf.size, src, n);
  buf.size += n;
  return true;
}

// Makes room for `n` bytes in steps that grow with the buffer, so that a run of
// appends costs linear time in spite of the exact growth above.
inline void reserveAhead(gs::container<uint8>& buf, size_t n) {
  if (buf.capacity - buf.size < n) growAhead(buf, n);
}

// Makes `out` a view of the `n` bytes at `offset` and moves `offset` past them.
// False, with both untouched, when fewer than n bytes are left.
inline bool extractView(const gs::ConstBuf& buf, size_t& offset,
                        gs::ConstBuf& out, uint64 n) {
  // Compared with what is left: offset + n could wrap around.
  if (offset > buf.size || n > buf.size - offset) return false;
  out = {buf.data + offset, n};
  offset += n;
  return true;
}

// The same with a copy of the bytes at `dst`.
inline bool extractFromBuffer(const gs::ConstBuf& buf, size_t& offset,
                              void* dst, uint64 n) {
  gs::ConstBuf view;
  if (!extractView(buf, offset, view, n)) return false;
  if (n != 0) std::memcpy(dst, view.data, n);
  return true;
}

// A number in its own width, little-endian.
template <class T>
bool appendNumber(gs::container<uint8>& buf, T value) {
  return appendToBuffer(buf, &value, sizeof value);
}
template <class T>
bool extractNumber(const gs::ConstBuf& buf, size_t& offset, T& value) {
  return extractFromBuffer(buf, offset, &value, sizeof value);
}

}  // namespace Brindle
