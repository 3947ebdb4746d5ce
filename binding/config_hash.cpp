#include "binding/config_hash.h"

#include <algorithm>
#include <string_view>

#include "binding/blob_walker.h"
#include "binding/block_identity.h"
#include "foundation/buffer.h"
#include "foundation/crc32.h"
#include "foundation/sha256.h"
#include "schema/schema_scan.h"

namespace brindle_napi {

namespace {

using Brindle::FieldValue;

bool isNamed(const gs::ConstBuf& name, std::string_view wanted) {
  return std::equal(name.data, name.data + name.size, wanted.begin(),
                    wanted.end());
}

struct BlockSummary {
  Uuid uuid;
  uint16 instance = 0;
  uint32 size = 0;
  uint32 crc = 0;
};

// Who a block is, by building no more of its schema than that takes.
bool identify(const gs::ConstBuf& block, Uuid& uuid, uint32& instance) {
  bool hasUuid = false;
  bool hasInstance = false;
  const auto visit = [&](const gs::ConstBuf& name, const FieldValue& value) {
    if (isNamed(name, UUID_NAME)) hasUuid = readUuid(&value, uuid);
    if (isNamed(name, INSTANCE_NAME)) {
      hasInstance = readInstance(&value, instance);
    }
  };
  if (Brindle::scanSchema(block, visit)) return hasUuid && hasInstance;
  const auto meta = Brindle::Meta::unpack(block, 0, nullptr);
  return meta && getBlockUuid(*meta, uuid) && getBlockInstance(*meta, instance);
}

bool summarise(const gs::ConstBuf& block, BlockSummary& out) {
  uint32 instance = 0;
  if (!identify(block, out.uuid, instance)) return false;
  out.instance = static_cast<uint16>(instance);
  out.size = static_cast<uint32>(block.size);
  out.crc = CRC32::crc(block.data, block.size, CRC32::POLY);
  return true;
}

bool summariseAll(const gs::ConstBuf& blob,
                  gs::container<BlockSummary>& summaries) {
  BlobWalker walker(blob);
  while (walker.next()) {
    BlockSummary summary;
    if (!summarise(walker.block(), summary)) return false;
    if (summaries.size == summaries.capacity) {
      summaries.reserve(2 * summaries.size);
    }
    summaries.emplace(summary);
  }
  return walker.fault() == BlobWalker::Fault::NONE;
}

void absorb(Sha256& sha, const BlockSummary& summary) {
  gs::container<uint8> bytes;
  bytes.reserve(26);
  Brindle::appendToBuffer(bytes, summary.uuid.data(), Uuid::SIZE);
  Brindle::appendNumber(bytes, summary.instance);
  Brindle::appendNumber(bytes, summary.size);
  Brindle::appendNumber(bytes, summary.crc);
  sha.update(bytes.data, bytes.size);
}

}  // namespace

bool calcNgConfigHash(const gs::ConstBuf& blob, uint8* digestOut) {
  if (digestOut == nullptr) return false;
  gs::container<BlockSummary> summaries;
  summaries.reserve(16);
  if (!summariseAll(blob, summaries)) return false;
  std::stable_sort(summaries.begin(), summaries.end(),
                   [](const BlockSummary& a, const BlockSummary& b) {
                     return a.uuid < b.uuid;
                   });
  Sha256 sha;
  sha.init();
  for (const BlockSummary& summary : summaries) absorb(sha, summary);
  std::copy_n(sha.hash(), Sha256::SIZE, digestOut);
  return true;
}

}  // namespace brindle_napi
