#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

using int8 = std::int8_t;
using int16 = std::int16_t;
using int32 = std::int32_t;
using int64 = std::int64_t;
using uint8 = std::uint8_t;
using uint16 = std::uint16_t;
using uint32 = std::uint32_t;
using uint64 = std::uint64_t;

using std::size_t;

// Every multi-byte number in a block is little-endian and is copied to and from
// memory as it stands, so the host has to agree.
static_assert(std::endian::native == std::endian::little,
              "brindle supports little-endian hosts only");
