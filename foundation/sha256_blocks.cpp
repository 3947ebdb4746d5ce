#include "foundation/sha256_blocks.h"

#include <bit>

#include "foundation/processor.h"

namespace gs {

namespace {

uint32 readBigEndian(const uint8* bytes) {
  return uint32{bytes[0]} << 24 | uint32{bytes[1]} << 16 |
         uint32{bytes[2]} << 8 | uint32{bytes[3]};
}

void expand(const uint8* block, uint32 (&w)[64]) {
  for (int t = 0; t < 16; ++t) w[t] = readBigEndian(block + 4 * t);
  for (int t = 16; t < 64; ++t) {
    const uint32 a = w[t - 15];
    const uint32 b = w[t - 2];
    const uint32 s0 = std::rotr(a, 7) ^ std::rotr(a, 18) ^ a >> 3;
    const uint32 s1 = std::rotr(b, 17) ^ std::rotr(b, 19) ^ b >> 10;
    w[t] = w[t - 16] + s0 + w[t - 7] + s1;
  }
}

void compress(Sha256Words& hash, const uint8* block) {
  uint32 w[64];
  expand(block, w);
  auto [a, b, c, d, e, f, g, h] = hash;
  for (int t = 0; t < 64; ++t) {
    const uint32 s1 = std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25);
    const uint32 t1 = h + s1 + ((e & f) ^ (~e & g)) + SHA256_K[t] + w[t];
    const uint32 s0 = std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22);
    const uint32 t2 = s0 + ((a & b) ^ (a & c) ^ (b & c));
    h = g;
    g = f;
    f = e;
    e = d + t1;
    d = c;
    c = b;
    b = a;
    a = t1 + t2;
  }
  const uint32 added[8] = {a, b, c, d, e, f, g, h};
  for (size_t i = 0; i < 8; ++i) hash[i] += added[i];
}

}  // namespace

void sha256ByDefinition(Sha256Words& hash, const uint8* data, size_t count) {
  for (; count != 0; --count, data += 64) compress(hash, data);
}

void sha256Blocks(Sha256Words& hash, const uint8* data, size_t count) {
  const auto absorb = hasSha256() ? sha256ByInstructions : sha256ByDefinition;
  absorb(hash, data, count);
}

}  // namespace gs
