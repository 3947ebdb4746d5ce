#pragma once

#include "foundation/processor.h"
#include "foundation/types.h"

// Multiplication of polynomials over GF(2) by the processor's own instructions,
// for functions marked BRINDLE_CARRYLESS; defined where there are any, and to
// be called only where multipliesCarryless() holds.
#if defined(__x86_64__)

#include <immintrin.h>

#define BRINDLE_CARRYLESS __attribute__((target("pclmul")))

namespace gs {

using Vector = __m128i;  // two halves of 64 bits each

BRINDLE_CARRYLESS inline Vector load(const uint8* from) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}

BRINDLE_CARRYLESS inline Vector pair(uint64 low, uint64 high) {
  return _mm_set_epi64x(static_cast<long long>(high),
                        static_cast<long long>(low));
}

BRINDLE_CARRYLESS inline uint64 high(Vector v) {
  return static_cast<uint64>(_mm_cvtsi128_si64(_mm_unpackhi_epi64(v, v)));
}

BRINDLE_CARRYLESS inline Vector multiplyLow(Vector a, Vector b) {
  return _mm_clmulepi64_si128(a, b, 0x00);
}

BRINDLE_CARRYLESS inline Vector multiplyHigh(Vector a, Vector b) {
  return _mm_clmulepi64_si128(a, b, 0x11);
}

}  // namespace gs

#elif defined(BRINDLE_ARM_TARGET)

#include <arm_neon.h>

#define BRINDLE_CARRYLESS BRINDLE_ARM_TARGET("+crypto")

namespace gs {

using Vector = uint64x2_t;  // two halves of 64 bits each

BRINDLE_CARRYLESS inline Vector load(const uint8* from) {
  return vreinterpretq_u64_u8(vld1q_u8(from));
}

BRINDLE_CARRYLESS inline Vector pair(uint64 low, uint64 high) {
  return vcombine_u64(vcreate_u64(low), vcreate_u64(high));
}

BRINDLE_CARRYLESS inline uint64 high(Vector v) { return vgetq_lane_u64(v, 1); }

BRINDLE_CARRYLESS inline Vector multiplyLow(Vector a, Vector b) {
  return vreinterpretq_u64_p128(
      vmull_p64(vgetq_lane_u64(a, 0), vgetq_lane_u64(b, 0)));
}

BRINDLE_CARRYLESS inline Vector multiplyHigh(Vector a, Vector b) {
  return vreinterpretq_u64_p128(
      vmull_high_p64(vreinterpretq_p64_u64(a), vreinterpretq_p64_u64(b)));
}

}  // namespace gs

#endif
