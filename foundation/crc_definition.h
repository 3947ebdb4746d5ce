#pragma once

#include "foundation/types.h"

// A reflected CRC as it is defined, bit by bit. Bit i of the 32-bit state is
// the coefficient of x^(31 - i); `poly` is the reversed (least significant bit
// first) form of the polynomial, without x^32. A narrower CRC is the same thing
// with its state and its polynomial in the low bits.

// The state times x.
constexpr uint32 crcTimesX(uint32 state, uint32 poly) {
  return state >> 1 ^ ((0 - (state & 1)) & poly);
}

// The state after one byte, already added to its low bits, has passed.
constexpr uint32 crcTimesX8(uint32 state, uint32 poly) {
  for (int bit = 0; bit < 8; ++bit) state = crcTimesX(state, poly);
  return state;
}

constexpr uint32 crcByDefinition(uint32 state, const uint8* data, size_t len,
                                 uint32 poly) {
  for (size_t i = 0; i < len; ++i) state = crcTimesX8(state ^ data[i], poly);
  return state;
}
