#include "binding/block_identity.h"

namespace brindle_napi {

namespace {

// The constant of that name, or null.
const Brindle::FieldValue* constantOf(const Brindle::Meta& meta,
                                      const char* name) {
  const auto* found = meta.fields().find([&](const Brindle::MetaField& field) {
    return field.isMeta() && field.value && field.name.text() == name;
  });
  return found == nullptr ? nullptr : found->value.value.get();
}

template <class T>
bool readNumber(const Brindle::FieldValue& value, uint32& out) {
  const T* number = value.get<T>();
  if (number != nullptr) out = *number;
  return number != nullptr;
}

const SafeString* textOf(const Brindle::FieldValue* value) {
  return value == nullptr ? nullptr : value->getShared<SafeString>();
}

}  // namespace

bool getBlockUuid(const Brindle::Meta& meta, Uuid& out) {
  const SafeString* text = textOf(constantOf(meta, "__uuid"));
  if (text == nullptr) return false;
  out = Uuid(*text);
  return out.isValid();
}

bool getBlockInstance(const Brindle::Meta& meta, uint32& out) {
  const Brindle::FieldValue* value = constantOf(meta, "__instance");
  return value != nullptr &&
         (readNumber<uint8>(*value, out) || readNumber<uint16>(*value, out) ||
          readNumber<uint32>(*value, out));
}

const SafeString* getDescriptorUuid(const Brindle::Meta& meta) {
  const Brindle::FieldValue* value = constantOf(meta, "__uuidDescr");
  if (value == nullptr) value = constantOf(meta, "descriptor_uuid");
  return textOf(value);
}

}  // namespace brindle_napi
