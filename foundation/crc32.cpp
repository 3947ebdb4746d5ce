#include "foundation/crc32.h"

namespace {

uint32 step(uint32 crc, uint32 poly) {
  return crc >> 1 ^ ((0 - (crc & 1)) & poly);
}

}  // namespace

uint32 CRC32::crc(uint32 seed, const uint8* data, size_t len, uint32 poly) {
  for (size_t i = 0; i < len; ++i) {
    seed ^= data[i];
    seed = step(seed, poly);
    seed = step(seed, poly);
    seed = step(seed, poly);
    seed = step(seed, poly);
    seed = step(seed, poly);
    seed = step(seed, poly);
    seed = step(seed, poly);
    seed = step(seed, poly);
  }
  return seed;
}

uint32 CRC32::crc(const uint8* data, size_t len, uint32 poly) {
  return crc(0xFFFFFFFF, data, len, poly);
}
