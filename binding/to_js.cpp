#include "binding/to_js.h"

#include "binding/block_identity.h"
#include "binding/object_writer.h"
#include "binding/property.h"
#include "foundation/crc32.h"

namespace brindle_napi {

namespace {

using Brindle::DataMap;
using Brindle::FieldType;
using Brindle::FieldValue;
using Brindle::Meta;
using Brindle::MetaField;

// Makes a value with `create`, a function of Node-API, and its arguments.
template <class... Parameters, class... Arguments>
napi_value made(napi_env env, napi_status (*create)(napi_env, Parameters...),
                Arguments... arguments) {
  napi_value value = nullptr;
  throwUnlessOk(env, create(env, arguments..., &value));
  return value;
}

napi_value boolean(napi_env env, bool value) {
  return made(env, napi_get_boolean, value);
}
napi_value number(napi_env env, double value) {
  return made(env, napi_create_double, value);
}
napi_value null(napi_env env) { return made(env, napi_get_null); }

// One element of each type.

template <class T>
concept Number = std::is_arithmetic_v<T>;
template <Number T>
napi_value convert(napi_env env, const Meta*, T value) {
  return number(env, static_cast<double>(value));
}
napi_value convert(napi_env env, const Meta*, int64 value) {
  return made(env, napi_create_bigint_int64, value);
}
napi_value convert(napi_env env, const Meta*, uint64 value) {
  return made(env, napi_create_bigint_uint64, value);
}
napi_value convert(napi_env env, const Meta*, Brindle::EnumType value) {
  return number(env, value.value);
}
napi_value convert(napi_env env, const Meta*, Brindle::BoolType value) {
  return boolean(env, static_cast<bool>(value));
}
napi_value convert(napi_env env, const Meta*, const SafeString& text) {
  return textToNapi(env, text);
}
napi_value convert(napi_env env, const Meta* nested, const DataMap& record) {
  return dataMapToObject(env, *nested, record);
}

template <class T>
napi_value convertSingle(napi_env env, const FieldValue& value,
                         const Meta* nested) {
  if constexpr (std::same_as<T, DataMap>) {
    const DataMap* record = value.getShared<DataMap>();
    if (nested == nullptr || record == nullptr) {
      return ObjectWriter(env).finish();
    }
    return convert(env, nested, *record);
  } else if constexpr (Brindle::SharedElement<T>) {
    const T* text = value.getShared<T>();
    return text == nullptr ? null(env) : convert(env, nested, *text);
  } else {
    const T* single = value.get<T>();
    return single == nullptr ? null(env) : convert(env, nested, *single);
  }
}

// The types whose arrays come out empty where those of the others are null.
template <class T>
constexpr bool EMPTY_ON_MISMATCH =
    std::same_as<T, int64> || std::same_as<T, uint64> ||
    std::same_as<T, DataMap>;

template <class T>
napi_value convertArray(napi_env env, const FieldValue& value,
                        const Meta* nested) {
  if (!EMPTY_ON_MISMATCH<T> && value.get<Brindle::ArrayOf<T>>() == nullptr) {
    return null(env);
  }
  const gs::container<T>* items = value.getArray<T>();
  if (std::same_as<T, DataMap> && nested == nullptr) items = nullptr;
  const size_t count = items == nullptr ? 0 : items->size;
  napi_value array = made(env, napi_create_array_with_length, count);
  inBatches(env, count, [&](uint64 i) {
    napi_value item = convert(env, nested, (*items)[i]);
    throwUnlessOk(env,
                  napi_set_element(env, array, static_cast<uint32_t>(i), item));
    return true;
  });
  return array;
}

napi_value enumMappingToObject(napi_env env,
                               const Brindle::EnumMapping& mapping) {
  ObjectWriter object(env);
  object.addEach(mapping, [&](const Brindle::EnumEntry& entry) {
    object.add(entry.name, number(env, entry.value));
  });
  return object.finish();
}

napi_value fieldToDTO(napi_env env, const MetaField& field) {
  ObjectWriter dto(env);
  dto.add("name", textToNapi(env, field.name));
  dto.add("type", stringToNapi(env, fieldTypeToString(field.type)));
  dto.add("repeated", boolean(env, field.isRepeated()));
  dto.add("isMeta", boolean(env, field.isMeta()));
  if (!field.enumMapping.empty()) {
    dto.add("enumMapping", enumMappingToObject(env, field.enumMapping));
  }
  if (field.meta) dto.add("nested", metaToDTO(env, *field.meta));
  return dto.finish();
}

napi_value metaValuesToObject(napi_env env, const Meta& meta) {
  ObjectWriter values(env);
  values.addEach(meta.fields(), [&](const MetaField& field) {
    if (!field.isMeta() || !field.value) return;
    values.add(field.name,
               fieldValueToNapi(env, *field.value, field.type,
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
  FieldValue descriptor;
  if (const SafeString* text = getDescriptorUuid(meta, descriptor)) {
    dto.add("descriptorUuid", textToNapi(env, *text));
  }
}

}  // namespace

const char* fieldTypeToString(FieldType type) {
  return type == FieldType::DATA_MAP ? "datamap"
                                     : Brindle::getNameFiledType(type);
}

std::string uuidCanonical(const uint8* bytes) {
  SafeString text = cloneOf(Uuid(bytes).toString());
  return text.toLower().c_str();
}

Napi::Value byteArrayToBuffer(Napi::Env env, const gs::ConstBuf& bytes) {
  void* copied = nullptr;
  napi_value buffer = nullptr;
  throwUnlessOk(env, napi_create_buffer_copy(env, bytes.size, bytes.data,
                                             &copied, &buffer));
  return {env, buffer};
}

Napi::Object metaToDTO(Napi::Env env, const Meta& meta) {
  const uint64 count = meta.fields().count;
  napi_value fields = made(env, napi_create_array_with_length, count);
  uint32_t index = 0;
  for (const MetaField& field : meta.fields()) {
    napi_value dto = fieldToDTO(env, field);
    throwUnlessOk(env, napi_set_element(env, fields, index++, dto));
  }
  ObjectWriter dto(env);
  dto.add("name", textToNapi(env, meta.name()));
  dto.add("fields", fields);
  return dto.finish();
}

Napi::Object dataMapToObject(Napi::Env env, const Meta& meta,
                             const DataMap& record) {
  ObjectWriter object(env);
  object.addEach(record.data(), [&](const DataMap::Entry& entry) {
    const MetaField* field = meta.field(entry.name);
    if (field == nullptr) return;
    object.add(entry.name,
               fieldValueToNapi(env, entry.value, field->type,
                                field->isRepeated(), field->meta.get()));
  });
  return object.finish();
}

Napi::Value fieldValueToNapi(Napi::Env env, const FieldValue& value,
                             FieldType type, bool repeated,
                             const Meta* nested) {
  if (repeated) return repeatedFieldValueToNapi(env, value, type, nested);
  if (!Brindle::isKnown(type)) return {env, null(env)};
  return {env, Brindle::dispatchType(type, [&](auto element) {
            using T = typename decltype(element)::type;
            return convertSingle<T>(env, value, nested);
          })};
}

Napi::Value repeatedFieldValueToNapi(Napi::Env env, const FieldValue& value,
                                     FieldType type, const Meta* nested) {
  if (!Brindle::isKnown(type)) return {env, null(env)};
  return {env, Brindle::dispatchType(type, [&](auto element) {
            using T = typename decltype(element)::type;
            return convertArray<T>(env, value, nested);
          })};
}

Napi::Object metaBlockToDTO(Napi::Env env, const Meta& meta,
                            const DataMap& record, const uint8* raw,
                            size_t rawLength) {
  const gs::ConstBuf bytes(raw, rawLength);
  ObjectWriter dto(env);
  addIdentity(env, meta, dto);
  dto.add("meta", metaToDTO(env, meta));
  dto.add("values", dataMapToObject(env, meta, record));
  dto.add("metaValues", metaValuesToObject(env, meta));
  dto.add("raw", rawToObject(env, bytes));
  dto.add("rawBytes", byteArrayToBuffer(env, bytes));
  return dto.finish();
}

}  // namespace brindle_napi
