#pragma once

#include <napi.h>

#include <string>

#include "binding/engine.h"
#include "schema/meta.h"
#include "serialization/data_map.h"

// Blocks to plain JavaScript objects. A Node-API call that fails throws a C++
// exception, for the guard around the export.
namespace brindle_napi {

// 16 bytes as 00112233-4455-6677-8899-aabbccddeeff, in stored order.
std::string uuidCanonical(const uint8* bytes);

// A new Buffer with a copy of the bytes, and of more behind them.
Napi::Value byteArrayToBuffer(Napi::Env env, const gs::ConstBuf& bytes,
                              const gs::ConstBuf& more = {});

// The description of a schema; see schema_json.h.
Napi::Object metaToDTO(const Engine& engine, const Brindle::Meta& meta);

// {uuid?, uuidRawBytes?, instance?, descriptorUuid?, meta, values, metaValues,
// raw: {size, crc32}, rawBytes}
Napi::Object metaBlockToDTO(const Engine& engine, const Brindle::Meta& meta,
                            const Brindle::DataMap& record, const uint8* raw,
                            size_t rawLength);

}  // namespace brindle_napi
