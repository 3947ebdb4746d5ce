#include "binding/blob_walker.h"

#include "binding/limits.h"
#include "foundation/buffer.h"

namespace brindle_napi {

bool BlobWalker::next() {
  if (started) ++count;
  started = true;
  start = following;
  if (start == blob.size) return false;

  size_t offset = start;
  uint16 size = 0;
  if (!Brindle::extractNumber(blob, offset, size)) {
    return stop(Fault::TRAILING_BYTES);
  }
  if (size == 0) return stop(Fault::ZERO_SIZE);
  if (size < MIN_META_BLOCK_BYTES) return stop(Fault::BELOW_MINIMUM);
  if (!Brindle::extractView(blob, offset, current, size)) {
    return stop(Fault::PAST_END);
  }
  following = offset;
  return true;
}

size_t BlobWalker::blockOffset() const { return following - current.size; }

bool BlobWalker::stop(Fault fault) {
  found = fault;
  return false;
}

}  // namespace brindle_napi
