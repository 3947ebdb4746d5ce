#pragma once

#include "foundation/types.h"

// The first two bytes of every data packet; the layout stands in serializer.h.
namespace Brindle::Packet {

constexpr uint8 VERSION = 10;
constexpr uint8 HAS_CRC = 1;  // of the packet flags
constexpr size_t FLAGS_OFFSET = 1;
constexpr size_t HEADER_SIZE = 2;
constexpr size_t MIN_SIZE = 3;  // the header and the length of an empty body

}  // namespace Brindle::Packet
