#pragma once

#include "foundation/types.h"

namespace Brindle {

// What a field holds. The numbers stand in packed blocks and must not change;
// a byte above 12 read from a block is no type but has to be carried safely.
enum class FieldType : uint8 {
  INT8 = 0,
  INT16 = 1,
  INT32 = 2,
  INT64 = 3,
  UINT8 = 4,
  UINT16 = 5,
  UINT32 = 6,
  UINT64 = 7,
  FLOAT = 8,   // 32-bit IEEE 754
  STRING = 9,  // SafeString
  ENUM = 10,   // one code out of the field's mapping
  BOOL = 11,
  DATA_MAP = 12,  // a nested record, described by a nested schema
};
constexpr uint8 FIELD_TYPE_COUNT = 13;

// "int8" .. "data_map", the core's diagnostic names; "unknown" above 12.
const char* getNameFiledType(FieldType type);

// Bytes of one value in its own width; 0 where there is no fixed width: string,
// data_map and anything above 12.
size_t getFieldSize(FieldType type);

// Bit sets; bits without a name are carried unchanged.
enum class FieldFlags : uint8 {
  NONE = 0,
  META = 1,      // a constant: the schema carries the value, records do not
  REPEATED = 2,  // an array of values of the field's type
};
enum class MetaFlags : uint8 {
  NONE = 0,
  HAS_CRC = 1,  // a CRC-16 trailer follows the packed schema
};

template <class Flags>
constexpr Flags withFlags(Flags set, Flags bits, bool on = true) {
  const unsigned without =
      static_cast<unsigned>(set) & ~static_cast<unsigned>(bits);
  return Flags(on ? without | static_cast<unsigned>(bits) : without);
}

// True when all of `bits` are set.
template <class Flags>
constexpr bool hasFlags(Flags set, Flags bits) {
  return withFlags(set, bits) == set;
}

}  // namespace Brindle
