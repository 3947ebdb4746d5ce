#include "foundation/crc_fold.h"

#include "foundation/carryless.h"
#include "foundation/crc16.h"
#include "foundation/crc32.h"
#include "foundation/crc_definition.h"
#include "foundation/load_number.h"

namespace gs {

#ifdef BRINDLE_CARRYLESS

namespace {

// Bytes are polynomials here: bit i of n bits, the first byte lowest, is the
// coefficient of x^(n - 1 - i). A product of two halves of a vector comes out
// one bit lower than a vector has it, that is, divided by x.

// The remainder of x^n, as the upper half of a polynomial of 64 bits.
constexpr uint64 remainderOf(unsigned n, uint32 poly) {
  uint32 state = 0x80000000;  // 1
  for (; n != 0; --n) state = crcTimesX(state, poly);
  return uint64{state} << 32;
}

// The quotient of x^96 without its constant term; bit i is that of x^(64 - i).
constexpr uint64 quotientOf96(uint32 poly) {
  uint64 quotient = 0;
  uint32 state = 1;  // x^31
  for (int i = 0; i < 64; ++i) {
    quotient |= uint64{state & 1} << i;
    state = crcTimesX(state, poly);
  }
  return quotient;
}

// From one to two T's in bytes. What is loaded twice is the same both times.
template <class T>
uint64 loadOverlapping(const uint8* from, size_t n) {
  const size_t second = n - sizeof(T);
  return loadNumber<T>(from) | uint64{loadNumber<T>(from + second)}
                                   << 8 * second;
}

// One to seven bytes.
inline uint64 loadFew(const uint8* from, size_t n) {
  if (n >= 4) return loadOverlapping<uint32>(from, n);
  return n == 1 ? *from : loadOverlapping<uint16>(from, n);
}

// The checksum of what is left of 64 or 128 bits, by the quotient (Barrett
// reduction): the state times x^32, less its quotient times the polynomial.
template <uint32 POLY>
struct Fold {
  static constexpr uint64 QUOTIENT = quotientOf96(POLY);
  static constexpr uint64 DIVISOR = uint64{POLY} << 1 | 1;

  BRINDLE_CARRYLESS static uint32 reduce(uint64 state) {
    const Vector divisor = pair(DIVISOR, 0);
    const Vector quotient = multiplyLow(pair(state, 0), pair(QUOTIENT, 0));
    return static_cast<uint32>(high(multiplyLow(quotient, divisor)));
  }

  BRINDLE_CARRYLESS static uint32 reduce(Vector state) {
    const Vector divisor = pair(DIVISOR, 0);
    const Vector factor = pair(QUOTIENT, QUOTIENT);
    state ^= multiplyLow(multiplyLow(state, factor), divisor);
    const Vector quotient = multiplyHigh(state, factor);
    return static_cast<uint32>(high(multiplyLow(quotient, divisor)));
  }

  BRINDLE_CARRYLESS static uint32 few(uint32 crc, const uint8* data, size_t n) {
    const uint64 state = (loadFew(data, n) ^ crc) << (64 - 8 * n);
    return reduce(state) ^ static_cast<uint32>(uint64{crc} >> 8 * n);
  }

  BRINDLE_CARRYLESS static uint32 head(uint32 crc, const uint8* data,
                                       size_t n) {
    if (n >= 8) {
      crc = reduce(loadNumber<uint64>(data) ^ crc);
      data += 8;
      n -= 8;
    }
    return n == 0 ? crc : few(crc, data, n);
  }

  // The state moved on by so many bytes, still of 128 bits.
  template <unsigned BYTES>
  BRINDLE_CARRYLESS static Vector advance(Vector state) {
    constexpr uint64 LOW = remainderOf(8 * BYTES + 63, POLY);
    constexpr uint64 HIGH = remainderOf(8 * BYTES - 1, POLY);
    const Vector factors = pair(LOW, HIGH);
    return multiplyLow(state, factors) ^ multiplyHigh(state, factors);
  }

  // Four states side by side, as one multiplication need not wait for another.
  BRINDLE_CARRYLESS static Vector lanes(Vector a, const uint8*& data,
                                        const uint8* end) {
    Vector b = load(data);
    Vector c = load(data + 16);
    Vector d = load(data + 32);
    for (data += 48; end - data >= 64; data += 64) {
      a = advance<64>(a) ^ load(data);
      b = advance<64>(b) ^ load(data + 16);
      c = advance<64>(c) ^ load(data + 32);
      d = advance<64>(d) ^ load(data + 48);
    }
    return advance<48>(a) ^ advance<32>(b) ^ advance<16>(c) ^ d;
  }

  // Whole vectors, at least one.
  BRINDLE_CARRYLESS static uint32 whole(uint32 crc, const uint8* data,
                                        const uint8* end) {
    Vector state = load(data) ^ pair(crc, 0);
    data += 16;
    if (end - data >= 48) state = lanes(state, data, end);
    for (; data != end; data += 16) state = advance<16>(state) ^ load(data);
    return reduce(state);
  }

  // What does not fill a vector comes first, where nothing waits for it yet.
  BRINDLE_CARRYLESS static uint32 crc(uint32 crc, const uint8* data,
                                      size_t len) {
    const size_t rest = len % 16;
    crc = head(crc, data, rest);
    return len == rest ? crc : whole(crc, data + rest, data + len);
  }
};

}  // namespace

BRINDLE_CARRYLESS uint32 foldCrc32(uint32 crc, const uint8* data, size_t len) {
  return Fold<CRC32::POLY>::crc(crc, data, len);
}

BRINDLE_CARRYLESS uint16 foldCrc16(uint16 crc, const uint8* data, size_t len) {
  return static_cast<uint16>(Fold<CRC16::POLY>::crc(crc, data, len));
}

#else

uint32 foldCrc32(uint32 crc, const uint8* data, size_t len) {
  return crcByDefinition(crc, data, len, CRC32::POLY);
}

uint16 foldCrc16(uint16 crc, const uint8* data, size_t len) {
  return static_cast<uint16>(crcByDefinition(crc, data, len, CRC16::POLY));
}

#endif

}  // namespace gs
