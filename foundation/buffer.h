#pragma once

#include "foundation/container.h"

// The write and bounded-read primitives of all codecs, and their only bounds
// checks: whatever is written into or read out of a block passes through here.
namespace Brindle {

// Appends `n` bytes from `src`. Without spare room the storage grows to exactly
// size + n. False, with `buf` unchanged, for a null `src` unless n is 0.
// Throws std::bad_alloc, with `buf` unchanged, when memory runs out.
// REQUIRES: `src` is not inside `buf`.
bool appendToBuffer(gs::container<uint8>& buf, const void* src, size_t n);

// Makes room ahead for a run of small appends, in steps that grow with the
// buffer, so that the run costs linear time in spite of the exact growth above.
void reserveAhead(gs::container<uint8>& buf);

// Copies the `n` bytes at `offset` to `dst` and moves `offset` past them.
// False, with `offset` and `dst` untouched, when fewer than n bytes are left.
bool extractFromBuffer(const gs::ConstBuf& buf, size_t& offset, void* dst,
                       uint64 n);

// The same without copying: `out` becomes a view of the n bytes inside `buf`.
bool extractView(const gs::ConstBuf& buf, size_t& offset, gs::ConstBuf& out,
                 uint64 n);

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
