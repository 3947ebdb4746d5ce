#include "binding/value_to_js.h"

#include <algorithm>

#include "binding/number_arrays.h"
#include "binding/object_writer.h"
#include "binding/property.h"
#include "schema/field_finder.h"

namespace brindle_napi {

namespace {

using Brindle::DataMap;
using Brindle::FieldType;
using Brindle::FieldValue;
using Brindle::Meta;
using Brindle::MetaField;

// Converts one element of each type.
struct Converter {
  const Engine& engine;
  const Meta* nested;  // the schema of records

  template <class T>
  requires(std::is_arithmetic_v<T>) napi_value operator()(T value) const {
    return made(engine.env, napi_create_double, static_cast<double>(value));
  }
  napi_value operator()(int64 value) const {
    return made(engine.env, napi_create_bigint_int64, value);
  }
  napi_value operator()(uint64 value) const {
    return made(engine.env, napi_create_bigint_uint64, value);
  }
  napi_value operator()(Brindle::EnumType code) const {
    return (*this)(code.value);
  }
  napi_value operator()(Brindle::BoolType value) const {
    return made(engine.env, napi_get_boolean, static_cast<bool>(value));
  }
  napi_value operator()(const SafeString& text) const {
    return textToNapi(engine.env, text);
  }
  napi_value operator()(const DataMap& record) const {
    return dataMapToObject(engine, *nested, record);
  }
};

napi_value null(napi_env env) { return made(env, napi_get_null); }

template <class T>
napi_value convertSingle(const Converter& convert, const FieldValue& value) {
  const napi_env env = convert.engine.env;
  if constexpr (std::same_as<T, DataMap>) {
    const DataMap* record = value.getShared<DataMap>();
    return convert.nested == nullptr || record == nullptr
               ? napi_value(ObjectWriter(env).finish())
               : convert(*record);
  } else if constexpr (Brindle::SharedElement<T>) {
    const T* text = value.getShared<T>();
    return text == nullptr ? null(env) : convert(*text);
  } else {
    const T* single = value.get<T>();
    return single == nullptr ? null(env) : convert(*single);
  }
}

template <class T>
napi_value setEach(const Converter& convert, const gs::container<T>& items) {
  const napi_env env = convert.engine.env;
  napi_value array = made(env, napi_create_array_with_length, items.size);
  inBatches(env, items.size, [&](uint64 i) {
    throwUnlessOk(env, napi_set_element(env, array, static_cast<uint32_t>(i),
                                        convert(items[i])));
    return true;
  });
  return array;
}

// The fastest way there is for so many elements of that type.
template <class T>
napi_value makeArray(const Converter& convert, const gs::container<T>& items) {
  constexpr size_t SHORT = 128;
  if (items.size != 1 && items.size <= SHORT) {
    napi_value elements[SHORT];
    std::transform(items.begin(), items.end(), elements, convert);
    return convert.engine.arrayOf(elements, items.size);
  }
  if constexpr (InTypedArray<T>) {
    if (items.size > SHORT) {
      return numbersToArray(convert.engine.env, typedArrayOf<T>(), items.data,
                            items.size, sizeof(T));
    }
  }
  return setEach(convert, items);
}

// The types whose arrays come out empty where those of the others are null.
template <class T>
constexpr bool EMPTY_ON_MISMATCH =
    std::same_as<T, int64> || std::same_as<T, uint64> ||
    std::same_as<T, DataMap>;

template <class T>
napi_value convertArray(const Converter& convert, const FieldValue& value) {
  if (!EMPTY_ON_MISMATCH<T> && value.get<Brindle::ArrayOf<T>>() == nullptr) {
    return null(convert.engine.env);
  }
  const gs::container<T>* items = value.getArray<T>();
  if (std::same_as<T, DataMap> && convert.nested == nullptr) items = nullptr;
  return items == nullptr ? convert.engine.arrayOf(nullptr, 0)
                          : makeArray(convert, *items);
}

}  // namespace

Napi::Object dataMapToObject(const Engine& engine, const Meta& meta,
                             const DataMap& record) {
  ObjectWriter object(engine.env);
  Brindle::FieldFinder fields(meta);
  object.addEach(record.data(), [&](const DataMap::Entry& entry) {
    const MetaField* field = fields.find(entry.name);
    if (field == nullptr) return;
    object.add(entry.name,
               fieldValueToNapi(engine, entry.value, field->type,
                                field->isRepeated(), field->meta.get()));
  });
  return object.finish();
}

Napi::Value fieldValueToNapi(const Engine& engine, const FieldValue& value,
                             FieldType type, bool repeated,
                             const Meta* nested) {
  if (repeated) return repeatedFieldValueToNapi(engine, value, type, nested);
  if (!Brindle::isKnown(type)) return {engine.env, null(engine.env)};
  const Converter convert{engine, nested};
  return {engine.env, Brindle::dispatchType(type, [&](auto element) {
            using T = typename decltype(element)::type;
            return convertSingle<T>(convert, value);
          })};
}

Napi::Value repeatedFieldValueToNapi(const Engine& engine,
                                     const FieldValue& value, FieldType type,
                                     const Meta* nested) {
  if (!Brindle::isKnown(type)) return {engine.env, null(engine.env)};
  const Converter convert{engine, nested};
  return {engine.env, Brindle::dispatchType(type, [&](auto element) {
            using T = typename decltype(element)::type;
            return convertArray<T>(convert, value);
          })};
}

}  // namespace brindle_napi
