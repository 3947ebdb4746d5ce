#pragma once

#include <napi.h>

#include <string>

#include "schema/meta.h"
#include "serialization/data_map.h"

// Native values to plain JavaScript objects. What does not fit its field
// becomes null, {} or [], as said below; a Node-API call that fails throws a
// C++ exception, for the guard around the export. Properties are defined, array
// elements set: a setter for an index in Array.prototype would be called.
namespace brindle_napi {

// "int8" .. "datamap", the names that callers use; "unknown" above 12.
const char* fieldTypeToString(Brindle::FieldType type);

// 16 bytes as 00112233-4455-6677-8899-aabbccddeeff, in stored order.
std::string uuidCanonical(const uint8* bytes);

// A new Buffer with a copy of the bytes.
Napi::Value byteArrayToBuffer(Napi::Env env, const gs::ConstBuf& bytes);

// {name, fields: [{name, type, repeated, isMeta, enumMapping?, nested?}]}
Napi::Object metaToDTO(Napi::Env env, const Brindle::Meta& meta);

// The entries of a record that `meta` has fields for, in record order.
Napi::Object dataMapToObject(Napi::Env env, const Brindle::Meta& meta,
                             const Brindle::DataMap& record);

// One value: numbers, BigInts for int64 and uint64, strings, booleans, the code
// of an enum, objects for records. Null when the value is not of `type`; {} for
// records in every such case.
Napi::Value fieldValueToNapi(Napi::Env env, const Brindle::FieldValue& value,
                             Brindle::FieldType type, bool repeated,
                             const Brindle::Meta* nested);
// An Array of them. Null when the value is not an array of `type`, but [] for
// int64, uint64 and data_map.
Napi::Value repeatedFieldValueToNapi(Napi::Env env,
                                     const Brindle::FieldValue& value,
                                     Brindle::FieldType type,
                                     const Brindle::Meta* nested);

// {uuid?, uuidRawBytes?, instance?, descriptorUuid?, meta, values, metaValues,
// raw: {size, crc32}, rawBytes}
Napi::Object metaBlockToDTO(Napi::Env env, const Brindle::Meta& meta,
                            const Brindle::DataMap& record, const uint8* raw,
                            size_t rawLength);

}  // namespace brindle_napi
