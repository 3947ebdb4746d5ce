#include "foundation/buffer.h"

namespace Brindle {

void growBy(gs::container<uint8>& buf, size_t n) {
  if (n > SIZE_MAX - buf.size) throw std::bad_alloc();
  buf.reserve(buf.size + n);
}

void growAhead(gs::container<uint8>& buf, size_t n) {
  constexpr uint64 SPARE = 64;
  if (n > SIZE_MAX - SPARE - 2 * buf.size) throw std::bad_alloc();
  buf.reserve(2 * buf.size + n + SPARE);
}

}  // namespace Brindle
