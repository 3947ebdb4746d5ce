#pragma once

#include <array>
#include <memory>

#include "foundation/safe_string.h"

// The digest engine of FIPS 180-4, for input given in pieces of any size.
struct sha256_state {
  std::array<uint32, 8> hash;
  std::array<uint8, 64> block;  // input that does not fill a block yet
  uint64 length;                // bytes absorbed so far
};
void sha256_init(sha256_state& state);
void sha256_hash(sha256_state& state, const void* data, size_t len);
void sha256_done(sha256_state& state, uint8* out);      // 32 bytes
void sha256(const void* data, size_t len, uint8* out);  // in one go

// One SHA-256 computation and its result. Reading the result finalizes it, also
// through a const object; a digest is all zero and not valid until then.
class Sha256 {
 public:
  static constexpr size_t SIZE = 32;

  Sha256() = default;  // needs init() before it absorbs anything
  Sha256(const void* data, size_t len);
  explicit Sha256(const SafeString& text);
  explicit Sha256(const uint8* ready);  // adopts 32 ready bytes

  // Starts over. Throws std::bad_alloc.
  void init();
  // Ignored for null, no bytes, a finalized object or one without init().
  void update(const void* data, size_t len);
  void update(const SafeString& text);
  void finalize() const;

  const uint8* hash() const;    // 32 bytes, owned by this object
  SafeString toString() const;  // 64 upper-case hex digits, first byte first
  SafeString toHexString() const { return toString(); }
  bool operator==(const Sha256& other) const;
  bool isValid() const;  // finalized, and not all zero
  void clear();          // zero digest, not finalized

  static Sha256 hash(const void* data, size_t len) { return {data, len}; }
  static Sha256 hash(const SafeString& text) { return Sha256(text); }

 private:
  mutable std::unique_ptr<sha256_state> state;
  mutable std::array<uint8, SIZE> digest{};
  mutable bool finalized = false;
};
