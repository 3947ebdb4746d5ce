#pragma once

#include <string>

#include "schema/meta.h"

namespace brindle_napi {

// The description of a schema as JSON text, its keys in this order:
//   {"name", "fields": [{"name", "type", "repeated", "isMeta",
//                        "enumMapping"?: {name: code}, "nested"?: {...}}]}
//
// The description is by far the largest part of a parsed block, and holds
// nothing that JSON cannot say: the engine's parser makes it in about half the
// time that property by property takes. Bytes of names that are not UTF-8 stand
// in the text as they are.
std::string schemaToJson(const Brindle::Meta& meta);

// "int8" .. "datamap", the names that callers use; "unknown" above 12.
const char* fieldTypeToString(Brindle::FieldType type);

}  // namespace brindle_napi
