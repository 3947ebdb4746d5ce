#pragma once

#include <memory>

#include "schema/enum_mapping.h"
#include "schema/field_value.h"

namespace Brindle {

class Meta;

// One field of a schema. Copies share the nested schema and the value.
struct MetaField : Named {  // the name is unique within its schema
  FieldType type = FieldType::INT8;
  // How many fields the schema held when this one was added; identifies the
  // field in data packets. Never renumbered and not packed.
  uint16 index = 0;
  FieldFlags flags = FieldFlags::NONE;
  EnumMapping enumMapping;            // empty unless the type is enum
  std::shared_ptr<Meta> meta;         // the nested schema of a record field
  std::shared_ptr<FieldValue> value;  // the constant of a META field

  bool isMeta() const { return hasFlags(flags, FieldFlags::META); }
  bool isRepeated() const { return hasFlags(flags, FieldFlags::REPEATED); }
};

}  // namespace Brindle
