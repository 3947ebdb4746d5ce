// Writes one value, alone:
//
//   int8, uint8, bool, enum code   1 byte
//   float                          4 bytes
//   uint16, uint32, uint64         varint
//   int16, int32, int64            zigzag at their width, then varint
//   string                         varint length, then the bytes
//   data_map                       varint length, then a data packet
//
// or an array of them: varint count, then the elements.

#include "foundation/diagnostics.h"
#include "foundation/zigzag.h"
#include "schema/checks.h"
#include "serialization/serializer.h"
#include "serialization/varint_io.h"

namespace Brindle {

namespace {

bool appendSized(gs::container<uint8>& out, const gs::ConstBuf& bytes) {
  reserveAhead(out, Varint::LONGEST + bytes.size);
  return appendVarint(out, bytes.size) &&
         appendToBuffer(out, bytes.data, bytes.size);
}

template <class T, class Write>
bool appendEach(const gs::container<T>& array, gs::container<uint8>& out,
                Write write) {
  if (!appendVarint(out, array.size)) return false;
  for (const T& element : array) {
    reserveAhead(out, Varint::LONGEST);
    if (!write(element)) return false;
  }
  return true;
}

template <class T>
bool checkContainer(const ArrayOf<T>& array) {
  if (array) return true;
  pqpr("Container is null");
  return false;
}

bool fits(const MetaField& field, const FieldValue& value) {
  if (value.isArray() != field.isRepeated()) return false;
  const FieldType type = getFieldType(value);
  return type == field.type ||
         (type == FieldType::STRING && field.type == FieldType::ENUM);
}

// Visits the alternatives of a value that fits `field`.
struct ValueWriter {
  const MetaField& field;
  gs::container<uint8>& out;
  uint8 depth;

  template <NonVarint T>
  bool operator()(const T& value) const {
    return Serializer::serializeNonVarint(value, out);
  }
  template <UnsignedVarint T>
  bool operator()(const T& value) const {
    return Serializer::serializeUInt(value, out);
  }
  template <SignedVarint T>
  bool operator()(const T& value) const {
    return Serializer::serializeInt(value, out);
  }
  bool operator()(const SafeString& text) const {
    if (field.type == FieldType::ENUM) {
      return Serializer::serializeStringEnum(text, field.enumMapping, out);
    }
    return appendSized(out, text.bytes());
  }
  bool operator()(const DataMap& record) const {
    if (!checkHasMeta(field.meta)) return false;
    const gs::container<uint8> packet = Serializer::serialize(
        *field.meta, record, static_cast<uint8>(depth + 1));
    return !packet.empty() && appendSized(out, packet);
  }
  template <SharedElement T>
  bool operator()(const std::shared_ptr<T>& single) const {
    return single && (*this)(*single);
  }
  template <class T>
  bool operator()(const ArrayOf<T>& array) const {
    if constexpr (NonVarint<T>) {
      return Serializer::serializeNonVarintArray<T>(array, out);
    } else if constexpr (UnsignedVarint<T>) {
      return Serializer::serializeUIntArray<T>(array, out);
    } else if constexpr (SignedVarint<T>) {
      return Serializer::serializeIntArray<T>(array, out);
    } else {
      return array && appendEach(*array, out, *this);
    }
  }
};

}  // namespace

bool Serializer::serializeField(const MetaField& field, const FieldValue& value,
                                gs::container<uint8>& out, uint8 depth) {
  return checkNesting(depth) && fits(field, value) &&
         value.visit(ValueWriter{field, out, depth});
}

template <NonVarint T>
bool Serializer::serializeNonVarint(T value, gs::container<uint8>& out) {
  return appendNumber(out, value);
}

template <NonVarint T>
bool Serializer::serializeNonVarintArray(const ArrayOf<T>& array,
                                         gs::container<uint8>& out) {
  return array && appendVarint(out, array->size) &&
         appendToBuffer(out, array->data, array->size * sizeof(T));
}

template <UnsignedVarint T>
bool Serializer::serializeUInt(T value, gs::container<uint8>& out) {
  return appendVarint(out, value);
}

template <UnsignedVarint T>
bool Serializer::serializeUIntArray(const ArrayOf<T>& array,
                                    gs::container<uint8>& out) {
  return checkContainer<T>(array) && appendEach(*array, out, [&](T value) {
           return serializeUInt(value, out);
         });
}

template <SignedVarint T>
bool Serializer::serializeInt(T value, gs::container<uint8>& out) {
  return appendVarint(out, Zigzag::encode(value));
}

template <SignedVarint T>
bool Serializer::serializeIntArray(const ArrayOf<T>& array,
                                   gs::container<uint8>& out) {
  return checkContainer<T>(array) && appendEach(*array, out, [&](T value) {
           return serializeInt(value, out);
         });
}

bool Serializer::serializeStringEnum(const SafeString& name,
                                     const EnumMapping& entries,
                                     gs::container<uint8>& out) {
  const EnumEntry* found = entries.find(name);
  if (found != nullptr) return appendNumber(out, found->value);
  pqpr("Invalid ENUM value %s ", name.c_str());
  for (const EnumEntry& entry : entries) pqpr("Enum %s", entry.name.c_str());
  return false;
}

// NOLINTBEGIN(bugprone-macro-parentheses): types cannot stand in any
#define BRINDLE_WRITERS(Concept, T)                                          \
  template bool Serializer::serialize##Concept<T>(T, gs::container<uint8>&); \
  template bool Serializer::serialize##Concept##Array<T>(                    \
      const ArrayOf<T>&, gs::container<uint8>&);

BRINDLE_WRITERS(NonVarint, int8)
BRINDLE_WRITERS(NonVarint, uint8)
BRINDLE_WRITERS(NonVarint, float)
BRINDLE_WRITERS(NonVarint, EnumType)
BRINDLE_WRITERS(NonVarint, BoolType)
BRINDLE_WRITERS(UInt, uint16)
BRINDLE_WRITERS(UInt, uint32)
BRINDLE_WRITERS(UInt, uint64)
BRINDLE_WRITERS(Int, int16)
BRINDLE_WRITERS(Int, int32)
BRINDLE_WRITERS(Int, int64)

// NOLINTEND(bugprone-macro-parentheses)
#undef BRINDLE_WRITERS

}  // namespace Brindle
