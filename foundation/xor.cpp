#include "foundation/xor.h"

#include <functional>
#include <numeric>

namespace {

template <class T>
T reduce(const T* data, size_t count) {
  if (data == nullptr) return 0;
  return std::accumulate(data, data + count, T{0}, std::bit_xor<T>());
}

}  // namespace

uint8 XOR::xor8(const uint8* data, size_t len) { return reduce(data, len); }

uint32 XOR::xor32(const uint32* data, size_t count) {
  return reduce(data, count);
}
