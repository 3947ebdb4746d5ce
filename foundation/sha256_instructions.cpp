#include "foundation/processor.h"
#include "foundation/sha256_blocks.h"

#if defined(__x86_64__)
#include <immintrin.h>
#define BRINDLE_SHA256 __attribute__((target("sha,sse4.1")))
#elif defined(BRINDLE_ARM_TARGET)
#include <arm_neon.h>
#define BRINDLE_SHA256 BRINDLE_ARM_TARGET("+crypto")
#endif

namespace gs {

#ifdef BRINDLE_SHA256

namespace {

#if defined(__x86_64__)

using Vector = __m128i;  // four words

struct State {
  Vector abef;  // f lowest
  Vector cdgh;  // h lowest
};

BRINDLE_SHA256 inline Vector load(const void* words) {
  return _mm_loadu_si128(static_cast<const __m128i*>(words));
}

BRINDLE_SHA256 inline Vector loadBigEndian(const uint8* words) {
  const Vector order = _mm_set_epi64x(0x0C0D0E0F08090A0B, 0x0405060700010203);
  return _mm_shuffle_epi8(load(words), order);
}

BRINDLE_SHA256 inline State loadState(const Sha256Words& hash) {
  const Vector badc = _mm_shuffle_epi32(load(&hash[0]), 0xB1);
  const Vector hgfe = _mm_shuffle_epi32(load(&hash[4]), 0x1B);
  return {_mm_alignr_epi8(badc, hgfe, 8), _mm_blend_epi16(hgfe, badc, 0xF0)};
}

BRINDLE_SHA256 inline void storeState(State state, Sha256Words& hash) {
  const Vector abef = _mm_shuffle_epi32(state.abef, 0x1B);
  const Vector ghcd = _mm_shuffle_epi32(state.cdgh, 0xB1);
  auto* out = reinterpret_cast<__m128i*>(hash.data());
  _mm_storeu_si128(out, _mm_blend_epi16(abef, ghcd, 0xF0));
  _mm_storeu_si128(out + 1, _mm_alignr_epi8(ghcd, abef, 8));
}

BRINDLE_SHA256 inline Vector add(Vector a, Vector b) {
  return _mm_add_epi32(a, b);
}

BRINDLE_SHA256 inline State add(State a, State b) {
  return {add(a.abef, b.abef), add(a.cdgh, b.cdgh)};
}

// Two rounds turn c, d, g, h into the new a, b, e, f; the old ones move on.
BRINDLE_SHA256 inline State fourRounds(State s, Vector input) {
  s.cdgh = _mm_sha256rnds2_epu32(s.cdgh, s.abef, input);
  input = _mm_unpackhi_epi64(input, input);
  s.abef = _mm_sha256rnds2_epu32(s.abef, s.cdgh, input);
  return s;
}

BRINDLE_SHA256 inline Vector expand(Vector a, Vector b, Vector c, Vector d) {
  const Vector sum = add(_mm_sha256msg1_epu32(a, b), _mm_alignr_epi8(d, c, 4));
  return _mm_sha256msg2_epu32(sum, d);
}

#else

using Vector = uint32x4_t;  // four words

struct State {
  Vector abcd;
  Vector efgh;
};

BRINDLE_SHA256 inline Vector load(const uint32* words) {
  return vld1q_u32(words);
}

BRINDLE_SHA256 inline Vector loadBigEndian(const uint8* words) {
  return vreinterpretq_u32_u8(vrev32q_u8(vld1q_u8(words)));
}

BRINDLE_SHA256 inline State loadState(const Sha256Words& hash) {
  return {load(&hash[0]), load(&hash[4])};
}

BRINDLE_SHA256 inline void storeState(State state, Sha256Words& hash) {
  vst1q_u32(&hash[0], state.abcd);
  vst1q_u32(&hash[4], state.efgh);
}

BRINDLE_SHA256 inline Vector add(Vector a, Vector b) { return vaddq_u32(a, b); }

BRINDLE_SHA256 inline State add(State a, State b) {
  return {add(a.abcd, b.abcd), add(a.efgh, b.efgh)};
}

BRINDLE_SHA256 inline State fourRounds(State s, Vector input) {
  return {vsha256hq_u32(s.abcd, s.efgh, input),
          vsha256h2q_u32(s.efgh, s.abcd, input)};
}

BRINDLE_SHA256 inline Vector expand(Vector a, Vector b, Vector c, Vector d) {
  return vsha256su1q_u32(vsha256su0q_u32(a, b), c, d);
}

#endif

// The last four words made are not used, nor waited for.
BRINDLE_SHA256 inline State absorbBlock(State state, const uint8* block) {
  Vector a = loadBigEndian(block);
  Vector b = loadBigEndian(block + 16);
  Vector c = loadBigEndian(block + 32);
  Vector d = loadBigEndian(block + 48);
  for (int t = 0; t < 64; t += 4) {
    state = fourRounds(state, add(a, load(SHA256_K + t)));
    const Vector next = expand(a, b, c, d);
    a = b;
    b = c;
    c = d;
    d = next;
  }
  return state;
}

}  // namespace

BRINDLE_SHA256 void sha256ByInstructions(Sha256Words& hash, const uint8* data,
                                         size_t count) {
  State state = loadState(hash);
  for (; count != 0; --count, data += 64) {
    state = add(state, absorbBlock(state, data));
  }
  storeState(state, hash);
}

#else

void sha256ByInstructions(Sha256Words& hash, const uint8* data, size_t count) {
  sha256ByDefinition(hash, data, count);
}

#endif

}  // namespace gs
