#pragma once

#include "foundation/types.h"

// Maps signed integers to unsigned ones of the same width so that small
// magnitudes of either sign become small: 0, -1, 1, -2, 2 give 0, 1, 2, 3, 4.
class Zigzag {
 public:
  static constexpr uint64 encode(int64 n) { return fold<uint64>(n); }
  static constexpr uint32 encode(int32 n) { return fold<uint32>(n); }
  static constexpr uint16 encode(int16 n) { return fold<uint16>(n); }

  static constexpr int64 decode(uint64 u) { return unfold<int64>(u); }
  static constexpr int32 decode(uint32 u) { return unfold<int32>(u); }
  static constexpr int16 decode(uint16 u) { return unfold<int16>(u); }

 private:
  template <class U, class S>
  static constexpr U fold(S n) {
    return static_cast<U>((static_cast<U>(n) << 1) ^
                          static_cast<U>(n >> (8 * sizeof n - 1)));
  }
  template <class S, class U>
  static constexpr S unfold(U u) {
    return static_cast<S>((u >> 1) ^ (U{0} - (u & 1)));
  }
};
