#pragma once

#include <array>

#include "foundation/types.h"

// The byte-wise table of a reflected CRC: entry i is what eight steps make of
// i. `poly` is the reversed (least significant bit first) form of the
// polynomial.
template <class T>
constexpr std::array<T, 256> makeCrcTable(T poly) {
  std::array<T, 256> table{};
  for (unsigned i = 0; i < 256; ++i) {
    unsigned crc = i;
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc & 1) * poly;
    table[i] = static_cast<T>(crc);
  }
  return table;
}
