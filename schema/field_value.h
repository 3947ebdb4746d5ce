#pragma once

#include <concepts>
#include <memory>
#include <type_traits>
#include <utility>
#include <variant>

#include "foundation/container.h"
#include "foundation/safe_string.h"
#include "schema/field_type.h"

namespace Brindle {

class DataMap;

// The value of an enum field: the code of the chosen entry.
struct EnumType {
  uint8 value = 0;
  bool operator==(const EnumType&) const = default;
};

// The value of a bool field: the byte as it was read, which need not be 0 or 1
// and keeps its value in checksums and when written again. Not a C++ bool, in
// which any other byte would be undefined behaviour.
struct BoolType {
  uint8 value = 0;
  explicit operator bool() const { return value != 0; }
  bool operator==(const BoolType&) const = default;
};

// How the elements of the 13 field types are held: alone, and in arrays. Text
// and records stand behind shared pointers, as do all arrays: copies of a value
// share them.
template <class T>
concept SharedElement = std::same_as<T, SafeString> || std::same_as<T, DataMap>;
template <class T>
using SingleOf = std::conditional_t<SharedElement<T>, std::shared_ptr<T>, T>;
template <class T>
using ArrayOf = std::shared_ptr<gs::container<T>>;

// Keeps the constructor below from being taken for that of copies.
template <class T>
concept NotFieldValue = !std::same_as<std::remove_cvref_t<T>, class FieldValue>;

// One field's value: 26 alternatives, the single ones of the 13 types in the
// order of their codes, then the arrays in the same order. A null pointer means
// that there is no value.
class FieldValue {
  template <class... T>
  using Alternatives = std::variant<SingleOf<T>..., ArrayOf<T>...>;

 public:
  using Variant =
      Alternatives<int8, int16, int32, int64, uint8, uint16, uint32, uint64,
                   float, SafeString, EnumType, BoolType, DataMap>;

  FieldValue() = default;  // int8 0
  // Holds the alternative of exactly the argument's type: nothing is converted.
  template <NotFieldValue T>
  FieldValue(T&& value)  // NOLINT(google-explicit-constructor)
      : held(std::in_place_type<std::remove_cvref_t<T>>,
             std::forward<T>(value)) {}

  size_t index() const { return held.index(); }  // 0 to 25
  bool isArray() const { return index() >= FIELD_TYPE_COUNT; }

  // The value when it is the alternative T, else null.
  template <class T>
  const T* get() const {
    return std::get_if<T>(&held);
  }
  // The text or record when there is one, else null.
  template <SharedElement T>
  const T* getShared() const {
    const auto* pointer = get<std::shared_ptr<T>>();
    return pointer == nullptr ? nullptr : pointer->get();
  }
  // The array when there is one with elements of type T, else null.
  template <class T>
  const gs::container<T>* getArray() const {
    const auto* pointer = get<ArrayOf<T>>();
    return pointer == nullptr ? nullptr : pointer->get();
  }

  // Calls `visitor` with the alternative that is held.
  template <class Visitor>
  decltype(auto) visit(Visitor&& visitor) const {
    return std::visit(std::forward<Visitor>(visitor), held);
  }

  // CRC-32/JAMCRC of the content: numbers, codes and bools as their
  // little-endian bytes, text as its bytes, records through DataMap::crc,
  // arrays element after element without lengths. 0 for a null pointer,
  // 0xFFFFFFFF for an empty array.
  uint32 crc() const;

 private:
  Variant held;
};
static_assert(std::variant_size_v<FieldValue::Variant> == 2 * FIELD_TYPE_COUNT);

// The type of the value, for arrays that of their elements.
FieldType getFieldType(const FieldValue& value);

// Names the element type of a field type: dispatchType(type, call) runs
// call(ElementTag<T>()) with the T that `type` stands for.
// REQUIRES: type is one of the 13.
template <class T>
struct ElementTag {
  using type = T;
};
template <class Call>
decltype(auto) dispatchType(FieldType type, Call&& call) {
  switch (type) {
    case FieldType::INT8:
      return call(ElementTag<int8>());
    case FieldType::INT16:
      return call(ElementTag<int16>());
    case FieldType::INT32:
      return call(ElementTag<int32>());
    case FieldType::INT64:
      return call(ElementTag<int64>());
    case FieldType::UINT8:
      return call(ElementTag<uint8>());
    case FieldType::UINT16:
      return call(ElementTag<uint16>());
    case FieldType::UINT32:
      return call(ElementTag<uint32>());
    case FieldType::UINT64:
      return call(ElementTag<uint64>());
    case FieldType::FLOAT:
      return call(ElementTag<float>());
    case FieldType::STRING:
      return call(ElementTag<SafeString>());
    case FieldType::ENUM:
      return call(ElementTag<EnumType>());
    case FieldType::BOOL:
      return call(ElementTag<BoolType>());
    case FieldType::DATA_MAP:
      break;
  }
  return call(ElementTag<DataMap>());
}

inline bool isKnown(FieldType type) {
  return static_cast<uint8>(type) < FIELD_TYPE_COUNT;
}

}  // namespace Brindle
