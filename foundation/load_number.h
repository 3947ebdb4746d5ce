#pragma once

#include <cstring>

#include "foundation/types.h"

namespace gs {

// As many bytes as a T has, from any address, in the machine's order.
template <class T>
T loadNumber(const uint8* from) {
  T number;
  std::memcpy(&number, from, sizeof number);
  return number;
}

}  // namespace gs
