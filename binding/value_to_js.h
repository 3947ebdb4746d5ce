#pragma once

#include <napi.h>

#include "binding/engine.h"
#include "schema/meta.h"
#include "serialization/data_map.h"

// The values of records to plain JavaScript values. What does not fit its field
// becomes null, {} or [], as said below; a Node-API call that fails throws a
// C++ exception, for the guard around the export. Nothing that JavaScript code
// may have planted in a prototype is called, with one exception: a setter for
// an index of Array.prototype, where an array of one element, or of more than
// 128 that no typed array holds, is filled.
namespace brindle_napi {

// The entries of a record that `meta` has fields for, in record order.
Napi::Object dataMapToObject(const Engine& engine, const Brindle::Meta& meta,
                             const Brindle::DataMap& record);

// One value: numbers, BigInts for int64 and uint64, strings, booleans, the code
// of an enum, objects for records. Null when the value is not of `type`; {} for
// records in every such case.
Napi::Value fieldValueToNapi(const Engine& engine,
                             const Brindle::FieldValue& value,
                             Brindle::FieldType type, bool repeated,
                             const Brindle::Meta* nested);
// An Array of them. Null when the value is not an array of `type`, but [] for
// int64, uint64 and data_map.
Napi::Value repeatedFieldValueToNapi(const Engine& engine,
                                     const Brindle::FieldValue& value,
                                     Brindle::FieldType type,
                                     const Brindle::Meta* nested);

}  // namespace brindle_napi
