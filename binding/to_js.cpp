#include "binding/to_js.h"

#include <algorithm>

#include "binding/block_identity.h"
#include "binding/object_writer.h"
#include "binding/schema_json.h"
#include "binding/value_to_js.h"
#include "foundation/crc32.h"

namespace brindle_napi {

namespace {

using Brindle::Meta;
using Brindle::MetaField;

napi_value number(napi_env env, double value) {
  return made(env, napi_create_double, value);
}

napi_value metaValuesToObject(const Engine& engine, const Meta& meta) {
  ObjectWriter values(engine.env);
  values.addEach(meta.fields(), [&](const MetaField& field) {
    if (!field.isMeta() || !field.value) return;
    values.add(field.name,
               fieldValueToNapi(engine, *field.value, field.type,
                                field.isRepeated(), field.meta.get()));
  });
  return values.finish();
}

napi_value rawToObject(napi_env env, const gs::ConstBuf& raw) {
  const uint32 crc = CRC32::crc(raw.data, raw.size, CRC32::POLY);
  ObjectWriter object(env);
  object.add("size", number(env, static_cast<double>(raw.size)));
  object.add("crc32", number(env, crc));
  return object.finish();
}

void addIdentity(napi_env env, const Meta& meta, ObjectWriter& dto) {
  Uuid uuid;
  if (getBlockUuid(meta, uuid)) {
    dto.add("uuid", stringToNapi(env, uuidCanonical(uuid.data())));
    dto.add("uuidRawBytes", byteArrayToBuffer(env, {uuid.data(), Uuid::SIZE}));
  }
  uint32 instance = 0;
  if (getBlockInstance(meta, instance)) {
    dto.add("instance", number(env, instance));
  }
  if (const SafeString* text = getDescriptorUuid(meta)) {
    dto.add("descriptorUuid", textToNapi(env, *text));
  }
}

}  // namespace

std::string uuidCanonical(const uint8* bytes) {
  SafeString text = cloneOf(Uuid(bytes).toString());
  return text.toLower().c_str();
}

Napi::Value byteArrayToBuffer(Napi::Env env, const gs::ConstBuf& bytes,
                              const gs::ConstBuf& more) {
  void* memory = nullptr;
  napi_value buffer = nullptr;
  throwUnlessOk(
      env, napi_create_buffer(env, bytes.size + more.size, &memory, &buffer));
  auto* behind =
      std::copy_n(bytes.data, bytes.size, static_cast<uint8*>(memory));
  std::copy_n(more.data, more.size, behind);
  return {env, buffer};
}

Napi::Object metaToDTO(const Engine& engine, const Meta& meta) {
  return {engine.env, engine.parseJson(schemaToJson(meta))};
}

Napi::Object metaBlockToDTO(const Engine& engine, const Meta& meta,
                            const Brindle::DataMap& record, const uint8* raw,
                            size_t rawLength) {
  const Napi::Env env = engine.env;
  const gs::ConstBuf bytes(raw, rawLength);
  ObjectWriter dto(env);
  addIdentity(env, meta, dto);
  dto.add("meta", metaToDTO(engine, meta));
  dto.add("values", dataMapToObject(engine, meta, record));
  dto.add("metaValues", metaValuesToObject(engine, meta));
  dto.add("raw", rawToObject(env, bytes));
  dto.add("rawBytes", byteArrayToBuffer(env, bytes));
  return dto.finish();
}

}  // namespace brindle_napi
