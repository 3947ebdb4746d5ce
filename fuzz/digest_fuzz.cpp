// Digests against their definition, in pieces too; identifiers and their texts.

#include <algorithm>
#include <bit>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <vector>

#include "foundation/sha256.h"
#include "foundation/uuid.h"
#include "fuzz/block_model.h"
#include "fuzz/invariant.h"

namespace {

using reference::bytesOf;

// The digest by its definition; its constants are the first 32 bits of the
// fractions of the roots of the first primes.
uint32 fraction(long double root) {
  return static_cast<uint32>((root - std::floor(root)) * 4294967296.0L);
}

std::vector<long double> firstPrimes(size_t count) {
  std::vector<long double> primes;
  for (int n = 2; primes.size() < count; ++n) {
    int factor = 2;
    while (n % factor != 0) ++factor;
    if (factor == n) primes.push_back(n);
  }
  return primes;
}

using Words = std::vector<uint32>;

void absorbBlock(Words& hash, Words w) {
  static const std::vector<long double> PRIMES = firstPrimes(64);
  for (size_t t = 16; t < 64; ++t) {
    const uint32 a = w[t - 15];
    const uint32 b = w[t - 2];
    w.push_back(w[t - 16] + (std::rotr(a, 7) ^ std::rotr(a, 18) ^ (a >> 3)) +
                w[t - 7] + (std::rotr(b, 17) ^ std::rotr(b, 19) ^ (b >> 10)));
  }
  Words v = hash;
  for (size_t t = 0; t < 64; ++t) {
    const uint32 a = v[0];
    const uint32 e = v[4];
    const uint32 mixed =
        v[7] + (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) +
        ((e & v[5]) | (~e & v[6])) + fraction(std::cbrt(PRIMES[t])) + w[t];
    const uint32 majority = (a & v[1]) | (a & v[2]) | (v[1] & v[2]);
    std::rotate(v.begin(), v.end() - 1, v.end());
    v[4] += mixed;
    v[0] = mixed + majority +
           (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22));
  }
  for (size_t i = 0; i < 8; ++i) hash[i] += v[i];
}

std::string digestOf(std::string_view bytes) {
  Words hash;
  for (const long double prime : firstPrimes(8)) {
    hash.push_back(fraction(std::sqrt(prime)));
  }
  std::string padded = std::string(bytes) + '\x80';
  while (padded.size() % 64 != 56) padded += '\0';
  const std::string bits = reference::le(uint64{bytes.size()} * 8);
  padded.append(bits.rbegin(), bits.rend());
  for (size_t at = 0; at < padded.size(); at += 64) {
    Words block(16);
    for (size_t i = 0; i < 64; ++i) {
      block[i / 4] = block[i / 4] << 8 | static_cast<uint8>(padded[at + i]);
    }
    absorbBlock(hash, block);
  }
  std::string out;
  for (const uint32 word : hash) {
    const std::string four = reference::le(word);
    out.append(four.rbegin(), four.rend());
  }
  return out;
}

std::string hexOf(std::string_view bytes) {
  std::string out;
  for (const char byte : bytes) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02X", static_cast<uint8>(byte));
    out += digits;
  }
  return out;
}

void checkSha256(std::string_view bytes, size_t split) {
  uint8 digest[Sha256::SIZE];
  sha256(bytes.data(), bytes.size(), digest);
  const std::string_view expected(reinterpret_cast<char*>(digest),
                                  sizeof digest);
  INVARIANT(expected == digestOf(bytes));
  Sha256 pieces;
  INVARIANT(!pieces.isValid());
  pieces.init();
  for (size_t at = 0; at < bytes.size(); at += split + 1) {
    const std::string_view piece = bytes.substr(at, split + 1);
    pieces.update(piece.data(), piece.size());
  }
  pieces.update(nullptr, 7);
  INVARIANT(!pieces.isValid());
  INVARIANT(reference::viewOf({pieces.hash(), Sha256::SIZE}) == expected);
  INVARIANT(pieces.isValid());
  pieces.update("late", 4);
  INVARIANT(pieces == Sha256(bytes.data(), bytes.size()));
  INVARIANT(pieces == Sha256(static_cast<const uint8*>(digest)));
  INVARIANT(hexOf(expected) == pieces.toString().c_str());
  pieces.clear();
  INVARIANT(!pieces.isValid() && !(pieces == Sha256::hash("", 0)));
}

void checkUuidText(const std::string& text) {
  SafeString copy(text.size() + 1, true);
  copy.setBytes(text.data(), text.size());
  const std::string model = reference::parseUuid(text);
  const Uuid uuid(copy);
  INVARIANT(reference::viewOf({uuid.data(), Uuid::SIZE}) == model);
  INVARIANT(uuid.isValid() == (model != std::string(16, '\0')));
  // A plain text ends at its first zero byte.
  const Uuid plain(copy.c_str());
  INVARIANT(reference::viewOf({plain.data(), Uuid::SIZE}) ==
            reference::parseUuid(text.substr(0, text.find('\0'))));
}

void checkUuid(std::string_view bytes) {
  checkUuidText(std::string(bytes.substr(0, 36)));
  if (bytes.size() < Uuid::SIZE) return;
  const Uuid uuid(bytesOf(bytes));
  std::string text = hexOf(bytes.substr(0, Uuid::SIZE));
  for (const size_t dash : {size_t{8}, size_t{13}, size_t{18}, size_t{23}})
    text.insert(dash, 1, '-');
  INVARIANT(text == uuid.toString().c_str());
  INVARIANT(Uuid(text.c_str()) == uuid);
  std::transform(text.begin(), text.end(), text.begin(), [](char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  });
  INVARIANT(Uuid(text.c_str()) == uuid);
  INVARIANT(Uuid(uuid.toU32()).toU32() == uuid.toU32());
  INVARIANT(reference::le(uuid.toU32()) == bytes.substr(0, 4));
  INVARIANT(!Uuid(text.substr(1).c_str()).isValid());
  const Uuid next(bytesOf(bytes.substr(bytes.size() - Uuid::SIZE)));
  INVARIANT((uuid < next) == (bytes.substr(0, Uuid::SIZE) <
                              bytes.substr(bytes.size() - Uuid::SIZE)));
}

}  // namespace

// The size of the pieces, then the bytes.
extern "C" int LLVMFuzzerTestOneInput(const uint8* data, size_t size) {
  if (size == 0) return 0;
  const std::string_view bytes = reference::viewOf({data + 1, size - 1});
  checkSha256(bytes, data[0]);
  checkUuid(bytes);
  return 0;
}
