#pragma once

#include <array>

#include "foundation/crc_definition.h"

// The byte-wise table of a reflected CRC: entry i is what eight steps make of
// i. `poly` is the reversed (least significant bit first) form of the
// polynomial.
template <class T>
constexpr std::array<T, 256> makeCrcTable(T poly) {
  std::array<T, 256> table{};
  for (uint32 i = 0; i < 256; ++i) {
    table[i] = static_cast<T>(crcTimesX8(i, poly));
  }
  return table;
}
