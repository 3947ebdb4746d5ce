#pragma once

#include "foundation/container.h"

namespace brindle_napi {

// Walks a configuration blob: entries one after the other, without padding,
// count or checksum of its own.
//
//   offset  width  field of an entry
//   0       2      blockSize, little-endian, 32 to 65535
//   2       n      one block: packed schema, then at most one data packet
class BlobWalker {
 public:
  enum class Fault : uint8 {
    NONE,
    ZERO_SIZE,       // blockSize is 0
    BELOW_MINIMUM,   // blockSize is 1 to 31
    PAST_END,        // fewer bytes than blockSize follow
    TRAILING_BYTES,  // one byte is left, too few for a length
  };

  // The bytes have to outlive the walker.
  explicit BlobWalker(const gs::ConstBuf& bytes) : blob(bytes) {}

  // Steps to the next entry; false behind the last and at a fault, where the
  // walk is over.
  bool next();
  Fault fault() const { return found; }

  const gs::ConstBuf& block() const { return current; }
  size_t index() const { return count; }   // of the entry, or of the fault
  size_t offset() const { return start; }  // of its length in the blob
  // Where the block itself stands in the blob.
  size_t blockOffset() const;

 private:
  bool stop(Fault fault);

  gs::ConstBuf blob;
  gs::ConstBuf current;
  size_t start = 0;
  size_t following = 0;  // where the next entry stands
  size_t count = 0;
  bool started = false;
  Fault found = Fault::NONE;
};

}  // namespace brindle_napi
