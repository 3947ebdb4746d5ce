#include "foundation/sha256.h"

#include <algorithm>
#include <bit>

namespace {

constexpr size_t BLOCK = 64;
constexpr size_t LENGTH_OFFSET = 56;  // of the bit count in the last block

// The first 32 bits of the fractional parts of the cube roots of the first 64
// primes.
constexpr uint32 K[64] = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1,
    0x923f82a4, 0xab1c5ed5, 0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3,
    0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174, 0xe49b69c1, 0xefbe4786,
    0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147,
    0x06ca6351, 0x14292967, 0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13,
    0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85, 0xa2bfe8a1, 0xa81a664b,
    0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a,
    0x5b9cca4f, 0x682e6ff3, 0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208,
    0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

uint32 readBigEndian(const uint8* bytes) {
  return uint32{bytes[0]} << 24 | uint32{bytes[1]} << 16 |
         uint32{bytes[2]} << 8 | uint32{bytes[3]};
}

template <class T>
void writeBigEndian(T value, uint8* out) {
  for (size_t i = sizeof value; i-- != 0; value >>= 8) {
    out[i] = static_cast<uint8>(value);
  }
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

void compress(std::array<uint32, 8>& hash, const uint8* block) {
  uint32 w[64];
  expand(block, w);
  auto [a, b, c, d, e, f, g, h] = hash;
  for (int t = 0; t < 64; ++t) {
    const uint32 s1 = std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25);
    const uint32 t1 = h + s1 + ((e & f) ^ (~e & g)) + K[t] + w[t];
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

void sha256_init(sha256_state& state) {
  // The same bits of the square roots of the first 8 primes.
  state.hash = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
  state.length = 0;
}

void sha256_hash(sha256_state& state, const void* data, size_t len) {
  const uint8* in = static_cast<const uint8*>(data);
  while (len != 0) {
    const size_t held = state.length % BLOCK;
    const size_t n = std::min(len, BLOCK - held);
    std::copy_n(in, n, state.block.data() + held);
    state.length += n;
    in += n;
    len -= n;
    if (held + n == BLOCK) compress(state.hash, state.block.data());
  }
}

void sha256_done(sha256_state& state, uint8* out) {
  static constexpr uint8 PADDING[BLOCK] = {0x80};
  const uint64 bits = state.length * 8;
  const size_t held = state.length % BLOCK;
  const size_t whole =
      held < LENGTH_OFFSET ? LENGTH_OFFSET : LENGTH_OFFSET + BLOCK;
  sha256_hash(state, PADDING, whole - held);
  uint8 count[8];
  writeBigEndian(bits, count);
  sha256_hash(state, count, sizeof count);
  for (size_t i = 0; i < 8; ++i) writeBigEndian(state.hash[i], out + 4 * i);
}

void sha256(const void* data, size_t len, uint8* out) {
  sha256_state state{};
  sha256_init(state);
  sha256_hash(state, data, len);
  sha256_done(state, out);
}

Sha256::Sha256(const void* data, size_t len) {
  init();
  update(data, len);
  finalize();
}

Sha256::Sha256(const SafeString& text)
    : Sha256(text.bytes().data, text.length()) {}

Sha256::Sha256(const uint8* ready) : finalized(true) {
  std::copy_n(ready, SIZE, digest.data());
}

void Sha256::init() {
  if (!state) state = std::make_unique<sha256_state>();
  sha256_init(*state);
  clear();
}

void Sha256::update(const void* data, size_t len) {
  if (data == nullptr || finalized || !state) return;
  sha256_hash(*state, data, len);
}

void Sha256::update(const SafeString& text) {
  update(text.bytes().data, text.length());
}

void Sha256::finalize() const {
  if (finalized || !state) return;
  sha256_done(*state, digest.data());
  finalized = true;
  state.reset();
}

const uint8* Sha256::hash() const {
  finalize();
  return digest.data();
}

SafeString Sha256::toString() const {
  SafeString text;
  text.appendHex(hash(), SIZE, Endianness::BIG);
  return text;
}

bool Sha256::operator==(const Sha256& other) const {
  return std::equal(hash(), hash() + SIZE, other.hash());
}

bool Sha256::isValid() const {
  return finalized && digest != decltype(digest){};
}

void Sha256::clear() {
  digest.fill(0);
  finalized = false;
}
