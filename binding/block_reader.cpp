#include "binding/block_reader.h"

#include "serialization/serializer.h"

namespace brindle_napi {

bool readBlock(const gs::ConstBuf& bytes, Block& out) {
  out = {};
  out.meta = Brindle::Meta::unpack(bytes, 0, nullptr);
  if (!out.meta) return false;
  const size_t size = Brindle::Meta::getPacketMetaSize(bytes.data, bytes.size);
  out.hasPayload = size != 0 && size < bytes.size;
  if (out.hasPayload) {
    out.record = Brindle::Serializer::deserializeOrThrow(
        *out.meta, bytes.from(size), 0, nullptr);
  }
  return true;
}

}  // namespace brindle_napi
