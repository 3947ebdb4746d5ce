#pragma once

#include <memory>

#include "schema/meta.h"
#include "serialization/data_map.h"

namespace brindle_napi {

// A block taken apart: a packed schema, then at most one data packet.
struct Block {
  std::unique_ptr<Brindle::Meta> meta;
  Brindle::DataMap record;
  bool hasPayload = false;  // bytes follow the schema
};

// False when the schema cannot be read. A payload that cannot be read gives an
// empty record and is no failure.
bool readBlock(const gs::ConstBuf& bytes, Block& out);

}  // namespace brindle_napi
