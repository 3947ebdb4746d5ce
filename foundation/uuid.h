#pragma once

#include <array>

#include "foundation/safe_string.h"

// A 16-byte identifier. All zero means that none is set.
class Uuid {
 public:
  static constexpr size_t SIZE = 16;

  Uuid() = default;
  explicit Uuid(const uint8* from);  // copies 16 bytes
  // Reads 00112233-4455-6677-8899-AABBCCDDEEFF in either case; what stands
  // between the groups is not looked at. Null or any other length than 36 gives
  // all zeros; at a bad digit the bytes read so far stay and zeros follow.
  explicit Uuid(const char* text);
  explicit Uuid(const SafeString& text);
  // Bytes 0 to 3, little-endian; the inverse of toU32().
  explicit Uuid(unsigned int number);

  SafeString toString() const;  // upper case, with dashes
  uint32 toU32() const;

  const uint8* data() const { return bytes.data(); }
  uint8 operator[](size_t i) const { return bytes[i]; }  // REQUIRES: i < 16
  bool isValid() const { return *this != Uuid(); }       // not all zero
  void clear() { bytes.fill(0); }
  // Byte by byte, the first one being the most significant.
  bool operator==(const Uuid& other) const = default;
  bool operator<(const Uuid& other) const { return bytes < other.bytes; }

  // The marker A5 5A, then 14 bytes from the process-wide rand(), which is not
  // seeded here. Neither unique enough nor secret: a label, not a key.
  static Uuid random();

 private:
  void parse(const char* text);  // of 36 characters

  std::array<uint8, SIZE> bytes{};
};
