#include "binding/to_native.h"

#include <algorithm>
#include <concepts>
#include <cstring>
#include <limits>
#include <new>

#include "binding/number_arrays.h"
#include "binding/property.h"
#include "binding/record_filler.h"

namespace brindle_napi {

namespace {

using Brindle::DataMap;
using Brindle::FieldType;
using Brindle::FieldValue;
using Brindle::Meta;

double numberOf(const Napi::Value& value) {
  return value.As<Napi::Number>().DoubleValue();
}

// A number as an element of an array; false when it does not fit.
template <std::integral T>
bool narrow(double number, T& out) {
  using Limits = std::numeric_limits<T>;
  if (!(number >= Limits::min() && number <= Limits::max())) return false;
  out = static_cast<T>(number);
  return out == number;
}
bool narrow(double number, Brindle::EnumType& out) {
  return narrow(number, out.value);
}
bool narrow(double number, float& out) {
  // Rounds to nearest; beyond the range of a float this is infinity.
  static_assert(std::numeric_limits<float>::is_iec559);
  out = static_cast<float>(number);
  return true;
}

// What has no exact double, and BigInts, are read one by one.
template <class T>
concept FromDoubles = InTypedArray<T> && sizeof(T) < sizeof(double);

// What a conversion depends on besides the value.
struct Context {
  const Meta* nested;  // the schema of records, or null
  WorkBudget& budget;
};

// One element of each type.

template <std::signed_integral T>
bool convert(const Napi::Value& value, const Context&, T& out) {
  using Limits = std::numeric_limits<T>;
  int64 wide = 0;
  if (!readSignedRange(value, Limits::min(), Limits::max(), wide)) return false;
  out = static_cast<T>(wide);
  return true;
}

template <std::unsigned_integral T>
bool convert(const Napi::Value& value, const Context&, T& out) {
  uint64 wide = 0;
  if (!readUnsignedRange(value, std::numeric_limits<T>::max(), wide)) {
    return false;
  }
  out = static_cast<T>(wide);
  return true;
}

bool convert(const Napi::Value& value, const Context& context,
             Brindle::EnumType& out) {
  return convert(value, context, out.value);
}

bool convert(const Napi::Value& value, const Context&, float& out) {
  return value.IsNumber() && narrow(numberOf(value), out);
}

bool convert(const Napi::Value& value, const Context& context,
             SafeString& out) {
  if (!value.IsString()) return false;
  const std::string text = textOf(value);
  // The rest, behind a zero byte, is not kept.
  if (!context.budget.takeValue(std::strlen(text.c_str()))) return false;
  out = cloneOf(viewOf(text));
  return true;
}

bool convert(const Napi::Value& value, const Context&, Brindle::BoolType& out) {
  if (!value.IsBoolean()) return false;
  out.value = isTrue(value) ? 1 : 0;
  return true;
}

bool convert(const Napi::Value& value, const Context& context, DataMap& out) {
  return context.nested != nullptr && value.IsObject() &&
         napiObjectToDataMap(value.Env(), value.As<Napi::Object>(),
                             *context.nested, out, context.budget);
}

template <class T>
bool convertSingle(const Napi::Value& value, const Context& context,
                   FieldValue& out) {
  if (!context.budget.takeValue()) return false;
  if constexpr (Brindle::SharedElement<T>) {
    auto single = std::make_shared<T>();
    if (!convert(value, context, *single)) return false;
    out = std::move(single);
  } else {
    T single{};
    if (!convert(value, context, single)) return false;
    out = single;
  }
  return true;
}

// Room for one more of `length` elements. The length of an array proves
// nothing: it may have holes only.
template <class T>
void makeRoom(gs::container<T>& array, uint64 length) {
  constexpr uint64 FIRST = 1024;
  if (array.size < array.capacity) return;
  array.reserve(std::min(length, std::max(FIRST, 2 * array.size)));
}

// Fills `array` from a long Array of finite numbers. False, with `array` empty,
// for any other: then the elements of `items`, which may have become a copy,
// have to be converted one by one.
template <FromDoubles T>
bool convertNumbers(Napi::Env env, Napi::Value& items, uint64 length,
                    gs::container<T>& array) {
  // Fewer take less time one by one; more are no arguments of one call.
  if (length < 64 || length > 32768) return false;
  napi_value copy = copyOf(env, items);
  if (copy == nullptr) return false;
  items = {env, copy};
  const double* numbers = numbersOf(env, copy, length);
  if (numbers == nullptr) return false;
  array.reserve(length);
  const bool fit = std::all_of(numbers, numbers + length, [&](double number) {
    return narrow(number, array.emplace());
  });
  if (!fit) array.size = 0;
  return fit;
}

template <class T>
bool convertArray(Napi::Env env, const Napi::Value& value,
                  const Context& context, FieldValue& out) {
  if (std::same_as<T, DataMap> && context.nested == nullptr) return false;
  auto array = std::make_shared<gs::container<T>>();
  const uint64 length = value.As<Napi::Array>().Length();
  const auto add = [&](const Napi::Value& item) {
    T element{};
    if (!context.budget.takeValue() || !convert(item, context, element)) {
      return false;
    }
    makeRoom(*array, length);
    array->emplace(std::move(element));
    return true;
  };
  Napi::Value items = value;
  bool converted = false;
  if constexpr (FromDoubles<T>) {
    converted = convertNumbers(env, items, length, *array);
    if (converted && !context.budget.takeElements(length)) return false;
  }
  if (!converted && !forEachElement(env, items, add)) return false;
  out = std::move(array);
  return true;
}

bool convertEntry(Napi::Env env, const Napi::Object& object,
                  const Napi::Value& key, RecordFiller& filler,
                  WorkBudget& budget) {
  const std::string text = textOf(key);
  if (!budget.takeName(text.size())) return false;
  if (!key.IsString()) return true;
  const Brindle::MetaField* field = filler.find(viewOf(text));
  if (field == nullptr || field->isMeta()) return true;
  const Napi::Value value = readProperty(env, object, key);
  if (isAbsent(value)) return true;
  FieldValue converted;
  if (!napiToFieldValue(env, value, field->type, field->isRepeated(), converted,
                        field->meta.get(), budget)) {
    return false;
  }
  if (!filler.put(*field, converted)) throw std::bad_alloc();
  return true;
}

}  // namespace

bool napiToFieldValue(Napi::Env env, const Napi::Value& value, FieldType type,
                      bool repeated, FieldValue& out, const Meta* nested,
                      WorkBudget& budget) {
  if (isAbsent(value)) return false;
  return repeated ? napiToRepeated(env, value, type, out, nested, budget)
                  : napiToScalar(env, value, type, out, nested, budget);
}

bool napiToScalar(Napi::Env, const Napi::Value& value, FieldType type,
                  FieldValue& out, const Meta* nested, WorkBudget& budget) {
  if (!Brindle::isKnown(type)) return false;
  return Brindle::dispatchType(type, [&](auto element) {
    using T = typename decltype(element)::type;
    return convertSingle<T>(value, {nested, budget}, out);
  });
}

bool napiToRepeated(Napi::Env env, const Napi::Value& value, FieldType type,
                    FieldValue& out, const Meta* nested, WorkBudget& budget) {
  if (!value.IsArray() || !Brindle::isKnown(type)) return false;
  return Brindle::dispatchType(type, [&](auto element) {
    using T = typename decltype(element)::type;
    return convertArray<T>(env, value, {nested, budget}, out);
  });
}

bool napiObjectToDataMap(Napi::Env env, const Napi::Object& object,
                         const Meta& meta, DataMap& map, WorkBudget& budget) {
  if (!budget.takeElements(elementCount(object))) return false;
  napi_value names = nullptr;
  if (napi_get_property_names(env, object, &names) != napi_ok) {
    clearPending(env);
    return false;
  }
  RecordFiller filler(meta, map);
  return forEachElement(env, {env, names}, [&](const Napi::Value& key) {
    return convertEntry(env, object, key, filler, budget);
  });
}

// The limits of the casts, 2^63 and 2^64, are exact as doubles; the largest
// integers below them are not. Written so that NaN is refused too.

bool readSignedRange(const Napi::Value& value, int64 min, int64 max,
                     int64& out) {
  if (value.IsBigInt()) {
    bool lossless = false;
    napi_get_value_bigint_int64(value.Env(), value, &out, &lossless);
    return lossless && min <= out && out <= max;
  }
  if (!value.IsNumber()) return false;
  const double number = numberOf(value);
  if (!(number >= -0x1p63 && number < 0x1p63)) return false;
  const int64 whole = static_cast<int64>(number);
  if (static_cast<double>(whole) != number) return false;
  if (whole < min || whole > max) return false;
  out = whole;
  return true;
}

bool readUnsignedRange(const Napi::Value& value, uint64 max, uint64& out) {
  if (value.IsBigInt()) {
    bool lossless = false;
    napi_get_value_bigint_uint64(value.Env(), value, &out, &lossless);
    return lossless && out <= max;
  }
  if (!value.IsNumber()) return false;
  const double number = numberOf(value);
  if (!(number >= 0 && number < 0x1p64)) return false;
  const uint64 whole = static_cast<uint64>(number);
  if (static_cast<double>(whole) != number) return false;
  if (whole > max) return false;
  out = whole;
  return true;
}

}  // namespace brindle_napi
