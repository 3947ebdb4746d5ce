#pragma once

#include "foundation/uuid.h"
#include "schema/meta.h"

// Constants with reserved names by which a block says what it is.
namespace brindle_napi {

// "__uuid": the block's identifier. False unless it is a string that reads as a
// valid one.
inline constexpr char UUID_NAME[] = "__uuid";
bool getBlockUuid(const Brindle::Meta& meta, Uuid& out);
bool readUuid(const Brindle::FieldValue* constant, Uuid& out);  // null: none

// "__instance": which one of several blocks of that kind. False unless it is a
// uint8, uint16 or uint32.
inline constexpr char INSTANCE_NAME[] = "__instance";
bool getBlockInstance(const Brindle::Meta& meta, uint32& out);
bool readInstance(const Brindle::FieldValue* constant, uint32& out);

// "__uuidDescr", or without one "descriptor_uuid": the text as it stands, owned
// by the schema; null unless it is a string.
const SafeString* getDescriptorUuid(const Brindle::Meta& meta);

}  // namespace brindle_napi
