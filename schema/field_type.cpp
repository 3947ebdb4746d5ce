#include "schema/field_type.h"

namespace Brindle {

namespace {

constexpr const char* NAMES[FIELD_TYPE_COUNT] = {
    "int8",   "int16", "int32",  "int64", "uint8", "uint16",  "uint32",
    "uint64", "float", "string", "enum",  "bool",  "data_map"};

constexpr uint8 SIZES[FIELD_TYPE_COUNT] = {1, 2, 4, 8, 1, 2, 4,
                                           8, 4, 0, 1, 1, 0};

}  // namespace

const char* getNameFiledType(FieldType type) {
  const auto code = static_cast<uint8>(type);
  return code < FIELD_TYPE_COUNT ? NAMES[code] : "unknown";
}

size_t getFieldSize(FieldType type) {
  const auto code = static_cast<uint8>(type);
  return code < FIELD_TYPE_COUNT ? SIZES[code] : 0;
}

}  // namespace Brindle
