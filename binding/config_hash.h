#pragma once

#include "foundation/container.h"

namespace brindle_napi {

// The fingerprint of a configuration blob (see blob_walker.h), the same in
// whatever order blocks of different identifiers are stored: SHA-256 over one
// record a block, sorted by identifier as 16 bytes, those of one identifier
// left in blob order.
//
//   offset  width  field of a record (little-endian, no padding)
//   0       16     identifier: the block's "__uuid"
//   16      2      the low 16 bits of its "__instance"
//   18      4      size of the block
//   22      4      CRC-32/JAMCRC of the block
//
// Fills the 32 bytes at `digestOut`. False, with these unspecified, for a null
// pointer, a blob that cannot be walked to its end, a block whose schema cannot
// be read, or one without an identifier or instance. Payloads are not decoded.
bool calcNgConfigHash(const gs::ConstBuf& blob, uint8* digestOut);

}  // namespace brindle_napi
