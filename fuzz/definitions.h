#pragma once

#include <string>
#include <string_view>

#include "foundation/container.h"

// Checksums and bytes by their definitions, one bit or byte at a time: what the
// product's own code is compared with.
namespace reference {

inline std::string_view viewOf(const gs::ConstBuf& bytes) {
  return {reinterpret_cast<const char*>(bytes.data), bytes.size};
}
inline const uint8* bytesOf(std::string_view text) {
  return reinterpret_cast<const uint8*>(text.data());
}

// The number as its little-endian bytes.
template <class T>
std::string le(T value) {
  std::string out;
  for (size_t i = 0; i < sizeof(T); ++i) {
    out += static_cast<char>(static_cast<uint64>(value) >> (8 * i));
  }
  return out;
}

// `poly` is the polynomial with its bits reversed.
template <class T>
T reflectedCrc(T crc, T poly, std::string_view bytes) {
  for (const char byte : bytes) {
    crc = static_cast<T>(crc ^ static_cast<uint8>(byte));
    for (int bit = 0; bit < 8; ++bit) {
      const bool carry = (crc & 1) != 0;
      crc = static_cast<T>(crc >> 1);
      if (carry) crc = static_cast<T>(crc ^ poly);
    }
  }
  return crc;
}
inline uint16 crc16(std::string_view bytes) {
  return reflectedCrc<uint16>(0xFFFF, 0xA001, bytes);
}
inline uint32 crc32(std::string_view bytes) {
  return reflectedCrc<uint32>(0xFFFFFFFF, 0xEDB88320, bytes);
}

inline std::string varint(uint64 value) {
  std::string out;
  for (; value > 127; value >>= 7) out += static_cast<char>(value | 128);
  return out + static_cast<char>(value);
}

}  // namespace reference
