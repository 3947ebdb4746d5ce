#include "binding/block_identity.h"

namespace brindle_napi {

using Brindle::FieldValue;

namespace {

// The constant of that name, or null.
const FieldValue* constantOf(const Brindle::Meta& meta, const char* name) {
  const auto* found = meta.fields().find([&](const Brindle::MetaField& field) {
    return field.isMeta() && field.value && field.name.text() == name;
  });
  return found == nullptr ? nullptr : found->value.value.get();
}

template <class T>
bool readNumber(const FieldValue& value, uint32& out) {
  const T* number = value.get<T>();
  if (number != nullptr) out = *number;
  return number != nullptr;
}

const SafeString* textOf(const FieldValue* value) {
  return value == nullptr ? nullptr : value->getShared<SafeString>();
}

}  // namespace

bool readUuid(const FieldValue* constant, Uuid& out) {
  const SafeString* text = textOf(constant);
  if (text == nullptr) return false;
  out = Uuid(*text);
  return out.isValid();
}

bool readInstance(const FieldValue* constant, uint32& out) {
  return constant != nullptr && (readNumber<uint8>(*constant, out) ||
                                 readNumber<uint16>(*constant, out) ||
                                 readNumber<uint32>(*constant, out));
}

bool getBlockUuid(const Brindle::Meta& meta, Uuid& out) {
  return readUuid(constantOf(meta, UUID_NAME), out);
}

bool getBlockInstance(const Brindle::Meta& meta, uint32& out) {
  return readInstance(constantOf(meta, INSTANCE_NAME), out);
}

const SafeString* getDescriptorUuid(const Brindle::Meta& meta) {
  const FieldValue* value = constantOf(meta, "__uuidDescr");
  if (value == nullptr) value = constantOf(meta, "descriptor_uuid");
  return textOf(value);
}

}  // namespace brindle_napi
