// Reads what value_writer.cpp writes; the encodings stand there.

#include <algorithm>

#include "foundation/diagnostics.h"
#include "foundation/zigzag.h"
#include "schema/checks.h"
#include "serialization/serializer.h"
#include "serialization/varint_io.h"

namespace Brindle {

namespace {

// The least that an element takes: a record has a length, a header of three
// bytes, and an entry of two.
template <class T>
constexpr uint64 LEAST_SIZE = std::same_as<T, DataMap> ? 6 : 1;

// Reads `count` elements with read(offset, element); null when one of them
// fails.
template <class T, class Read>
ArrayOf<T> readElements(const gs::ConstBuf& buf, size_t& offset, uint64 count,
                        Read read) {
  auto array = std::make_shared<gs::container<T>>();
  // A larger count than fits must fail; it does so at the element that is
  // missing.
  array->reserve(std::min(count, (buf.size - offset) / LEAST_SIZE<T>));
  size_t at = offset;  // a copy, which no element can alias
  for (uint64 i = 0; i < count; ++i) {
    T element{};
    if (!read(at, element)) {
      array = nullptr;
      break;
    }
    array->emplace(std::move(element));
  }
  offset = at;
  return array;
}

struct ValueReader {
  const MetaField& field;
  const gs::ConstBuf& buf;
  size_t& offset;
  uint8 depth;

  template <NonVarint T>
  bool read(T& out) const {
    return Serializer::deserializeNonVarint(buf, offset, out);
  }
  bool read(EnumType& out) const {
    if (!Serializer::deserializeNonVarint(buf, offset, out)) return false;
    if (field.enumMapping.hasCode(out.value)) return true;
    pqpr("Invalid ENUM value for field");
    return false;
  }
  template <UnsignedVarint T>
  bool read(T& out) const {
    return Serializer::deserializeUInt(buf, offset, out);
  }
  template <SignedVarint T>
  bool read(T& out) const {
    return Serializer::deserializeInt(buf, offset, out);
  }
  bool read(SafeString& out) const {
    return Serializer::deserializeSafeString(buf, offset, out);
  }
  bool read(DataMap& out) const {
    return Serializer::deserializeDataMap(buf, offset, *field.meta, out, depth);
  }

  template <class T>
  bool readSingle(FieldValue& value) const {
    if constexpr (SharedElement<T>) {
      auto single = std::make_shared<T>();
      if (!read(*single)) return false;
      value = std::move(single);
    } else {
      T single{};
      if (!read(single)) return false;
      value = single;
    }
    return true;
  }

  template <class T>
  ArrayOf<T> readArray() const {
    if constexpr (UnsignedVarint<T>) {
      return Serializer::deserializeUIntArray<T>(buf, offset);
    } else if constexpr (SignedVarint<T>) {
      return Serializer::deserializeIntArray<T>(buf, offset);
    } else if constexpr (NonVarint<T> && !std::same_as<T, EnumType>) {
      return Serializer::deserializeNonVarintArray<T>(buf, offset);
    } else {
      uint64 count = 0;
      if (!extractVarint(buf, offset, count) || count == 0) return nullptr;
      return readElements<T>(
          buf, offset, count, [this](size_t& at, T& element) {
            return ValueReader{field, buf, at, depth}.read(element);
          });
    }
  }

  template <class T>
  bool operator()(ElementTag<T>, FieldValue& value) const {
    if (std::same_as<T, DataMap> && !checkHasMeta(field.meta)) return false;
    if (!field.isRepeated()) return readSingle<T>(value);
    ArrayOf<T> array = readArray<T>();
    if (!array) return false;
    value = std::move(array);
    return true;
  }
};

}  // namespace

bool Serializer::deserializeField(const MetaField& field,
                                  const gs::ConstBuf& buf, size_t& offset,
                                  FieldValue& value, uint8 depth) {
  if (!checkNesting(depth)) return false;
  if (!isKnown(field.type)) {
    pqpr("Unsupported field type");
    return false;
  }
  const ValueReader reader{field, buf, offset, depth};
  return dispatchType(field.type,
                      [&](auto element) { return reader(element, value); });
}

template <NonVarint T>
bool Serializer::deserializeNonVarint(const gs::ConstBuf& buf, size_t& offset,
                                      T& out) {
  return extractNumber(buf, offset, out);
}

template <UnsignedVarint T>
bool Serializer::deserializeUInt(const gs::ConstBuf& buf, size_t& offset,
                                 T& out) {
  uint64 value = 0;
  if (!extractVarint(buf, offset, value)) return false;
  out = static_cast<T>(value);
  return true;
}

template <SignedVarint T>
bool Serializer::deserializeInt(const gs::ConstBuf& buf, size_t& offset,
                                T& out) {
  std::make_unsigned_t<T> folded = 0;
  if (!deserializeUInt(buf, offset, folded)) return false;
  out = Zigzag::decode(folded);
  return true;
}

bool Serializer::deserializeSafeString(const gs::ConstBuf& buf, size_t& offset,
                                       SafeString& out) {
  uint64 length = 0;
  gs::ConstBuf bytes;
  if (!extractVarint(buf, offset, length) ||
      !extractView(buf, offset, bytes, length)) {
    return false;
  }
  out = cloneOf(bytes);
  return true;
}

template <NonVarint T>
ArrayOf<T> Serializer::deserializeNonVarintArray(const gs::ConstBuf& buf,
                                                 size_t& offset) {
  uint64 count = 0;
  if (!extractVarint(buf, offset, count) || count == 0) return nullptr;
  if (count > (buf.size - offset) / sizeof(T)) return nullptr;
  auto array = std::make_shared<gs::container<T>>();
  array->reserve(count);
  extractFromBuffer(buf, offset, array->data, count * sizeof(T));
  array->size = count;
  return array;
}

template <UnsignedVarint T>
ArrayOf<T> Serializer::deserializeUIntArray(const gs::ConstBuf& buf,
                                            size_t& offset) {
  uint64 count = 0;
  if (!extractVarint(buf, offset, count)) return nullptr;
  return readElements<T>(buf, offset, count, [&](size_t& at, T& element) {
    return deserializeUInt(buf, at, element);
  });
}

template <SignedVarint T>
ArrayOf<T> Serializer::deserializeIntArray(const gs::ConstBuf& buf,
                                           size_t& offset) {
  uint64 count = 0;
  if (!extractVarint(buf, offset, count)) return nullptr;
  return readElements<T>(buf, offset, count, [&](size_t& at, T& element) {
    return deserializeInt(buf, at, element);
  });
}

// NOLINTBEGIN(bugprone-macro-parentheses): types cannot stand in any
#define BRINDLE_READERS(Concept, T)                                      \
  template bool Serializer::deserialize##Concept<T>(const gs::ConstBuf&, \
                                                    size_t&, T&);        \
  template ArrayOf<T> Serializer::deserialize##Concept##Array<T>(        \
      const gs::ConstBuf&, size_t&);

BRINDLE_READERS(NonVarint, int8)
BRINDLE_READERS(NonVarint, uint8)
BRINDLE_READERS(NonVarint, float)
BRINDLE_READERS(NonVarint, EnumType)
BRINDLE_READERS(NonVarint, BoolType)
BRINDLE_READERS(UInt, uint16)
BRINDLE_READERS(UInt, uint32)
BRINDLE_READERS(UInt, uint64)
BRINDLE_READERS(Int, int16)
BRINDLE_READERS(Int, int32)
BRINDLE_READERS(Int, int64)

// NOLINTEND(bugprone-macro-parentheses)
#undef BRINDLE_READERS

}  // namespace Brindle
