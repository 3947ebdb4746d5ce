#include "binding/block_identity.h"

namespace brindle_napi {

namespace {

// A name that found no memory would find no constant: cloneOf throws for it.
bool readConstant(const Brindle::Meta& meta, const char* name,
                  Brindle::FieldValue& out) {
  return meta.getMetaValue(cloneOf(name), out);
}

template <class T>
bool readNumber(const Brindle::FieldValue& value, uint32& out) {
  const T* number = value.get<T>();
  if (number != nullptr) out = *number;
  return number != nullptr;
}

}  // namespace

bool getBlockUuid(const Brindle::Meta& meta, Uuid& out) {
  Brindle::FieldValue value;
  if (!readConstant(meta, "__uuid", value)) return false;
  const SafeString* text = value.getShared<SafeString>();
  if (text == nullptr) return false;
  out = Uuid(*text);
  return out.isValid();
}

bool getBlockInstance(const Brindle::Meta& meta, uint32& out) {
  Brindle::FieldValue value;
  return readConstant(meta, "__instance", value) &&
         (readNumber<uint8>(value, out) || readNumber<uint16>(value, out) ||
          readNumber<uint32>(value, out));
}

const SafeString* getDescriptorUuid(const Brindle::Meta& meta,
                                    Brindle::FieldValue& holder) {
  if (!readConstant(meta, "__uuidDescr", holder) &&
      !readConstant(meta, "descriptor_uuid", holder)) {
    return nullptr;
  }
  return holder.getShared<SafeString>();
}

}  // namespace brindle_napi
