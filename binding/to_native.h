#pragma once

#include <napi.h>

#include "binding/work_budget.h"
#include "schema/meta.h"
#include "serialization/data_map.h"

// JavaScript values to native ones: strict, without coercion. Integers and enum
// codes take numbers and BigInts that are exact and in range, float numbers
// only, string strings only (up to the first U+0000), bool booleans only,
// data_map objects and functions. Each function answers true and fills `out`,
// or answers false: callers word the error, which is another one when `budget`
// is spent. Throws std::bad_alloc.
namespace brindle_napi {

// One field's value; null and undefined are refused. `nested` is the schema of
// the records of a data_map field, or null. A refusal leaves `out` alone.
bool napiToFieldValue(Napi::Env env, const Napi::Value& value,
                      Brindle::FieldType type, bool repeated,
                      Brindle::FieldValue& out, const Brindle::Meta* nested,
                      WorkBudget& budget);
bool napiToScalar(Napi::Env env, const Napi::Value& value,
                  Brindle::FieldType type, Brindle::FieldValue& out,
                  const Brindle::Meta* nested, WorkBudget& budget);
// Real arrays only: no typed arrays, no holes.
bool napiToRepeated(Napi::Env env, const Napi::Value& value,
                    Brindle::FieldType type, Brindle::FieldValue& out,
                    const Brindle::Meta* nested, WorkBudget& budget);

// Takes over the properties, inherited ones too, that `meta` has fields for, in
// the object's order. Constants of the schema and null or undefined values are
// skipped. On refusal `map` holds the entries before it.
bool napiObjectToDataMap(Napi::Env env, const Napi::Object& object,
                         const Brindle::Meta& meta, Brindle::DataMap& map,
                         WorkBudget& budget);

// `out` is also set by a BigInt that is refused.
bool readSignedRange(const Napi::Value& value, int64 min, int64 max,
                     int64& out);
bool readUnsignedRange(const Napi::Value& value, uint64 max, uint64& out);

}  // namespace brindle_napi
