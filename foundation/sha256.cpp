#include "foundation/sha256.h"

#include <algorithm>

#include "foundation/sha256_blocks.h"

namespace {

constexpr size_t BLOCK = 64;
constexpr size_t LENGTH_OFFSET = 56;  // of the bit count in the last block

template <class T>
void writeBigEndian(T value, uint8* out) {
  for (size_t i = sizeof value; i-- != 0; value >>= 8) {
    out[i] = static_cast<uint8>(value);
  }
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
  const size_t held = state.length % BLOCK;
  state.length += len;
  if (held != 0) {
    const size_t n = std::min(len, BLOCK - held);
    std::copy_n(in, n, state.block.data() + held);
    if (held + n < BLOCK) return;
    gs::sha256Blocks(state.hash, state.block.data(), 1);
    in += n;
    len -= n;
  }
  gs::sha256Blocks(state.hash, in, len / BLOCK);
  std::copy_n(in + (len - len % BLOCK), len % BLOCK, state.block.data());
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
