// A blob: the walk over its entries, and its configuration hash.

#include <algorithm>
#include <set>

#include "binding/blob_walker.h"
#include "binding/config_hash.h"
#include "foundation/sha256.h"
#include "fuzz/agreement.h"
#include "fuzz/block_model.h"
#include "fuzz/mutator.h"

namespace {

using brindle_napi::BlobWalker;
using Fault = BlobWalker::Fault;

struct Walk {
  std::vector<std::string> blocks;
  Fault fault = Fault::NONE;
  size_t faultOffset = 0;  // or the end of the blob
};

Walk walk(const std::string& blob) {
  Walk out;
  for (size_t& at = out.faultOffset; at < blob.size();) {
    const size_t left = blob.size() - at;
    if (left < 2) return out.fault = Fault::TRAILING_BYTES, out;
    const size_t size =
        static_cast<uint8>(blob[at]) + 256U * static_cast<uint8>(blob[at + 1]);
    if (size == 0) return out.fault = Fault::ZERO_SIZE, out;
    if (size < 32) return out.fault = Fault::BELOW_MINIMUM, out;
    if (size > left - 2) return out.fault = Fault::PAST_END, out;
    out.blocks.push_back(blob.substr(at + 2, size));
    at += 2 + size;
  }
  return out;
}

void checkWalk(const gs::ConstBuf& blob, const Walk& model) {
  BlobWalker walker(blob);
  size_t at = 0;
  for (size_t i = 0; i < model.blocks.size(); ++i) {
    INVARIANT(walker.next());
    INVARIANT(walker.index() == i && walker.offset() == at);
    INVARIANT(walker.blockOffset() == at + 2);
    INVARIANT(walker.block().data == blob.data + at + 2);
    INVARIANT(reference::viewOf(walker.block()) == model.blocks[i]);
    at += 2 + model.blocks[i].size();
  }
  INVARIANT(!walker.next());
  INVARIANT(walker.fault() == model.fault);
  INVARIANT(walker.index() == model.blocks.size());
  INVARIANT(walker.offset() == model.faultOffset);
}

// The record of one block; empty if it cannot have one.
std::string summaryOf(std::string block) {
  reference::Schema schema;
  if (!reference::Reader(block).schema(1, schema)) return {};
  const auto uuid = reference::uuidOf(schema);
  const auto instance = reference::instanceOf(schema);
  if (!uuid || !instance) return {};
  return *uuid + reference::le(static_cast<uint16>(*instance)) +
         reference::le(static_cast<uint32>(block.size())) +
         reference::le(reference::crc32(block));
}

std::string uuidIn(const std::string& summary) { return summary.substr(0, 16); }

std::optional<std::string> hashOf(const std::vector<std::string>& blocks) {
  std::vector<std::string> summaries;
  for (const std::string& block : blocks) {
    summaries.push_back(summaryOf(block));
    if (summaries.back().empty()) return std::nullopt;
  }
  std::stable_sort(summaries.begin(), summaries.end(),
                   [](const std::string& a, const std::string& b) {
                     return uuidIn(a) < uuidIn(b);
                   });
  std::string all;
  for (const std::string& summary : summaries) all += summary;
  std::string digest(32, '\0');
  sha256(all.data(), all.size(), reinterpret_cast<uint8*>(digest.data()));
  return digest;
}

std::optional<std::string> hashOf(std::string_view blob) {
  std::string digest(32, '\0');
  const bool ok = brindle_napi::calcNgConfigHash(
      exactCopy(blob), reinterpret_cast<uint8*>(digest.data()));
  return ok ? std::optional(digest) : std::nullopt;
}

// The order of blocks does not count as long as their identifiers differ.
void checkOrder(const Walk& model, const std::optional<std::string>& hash) {
  std::set<std::string> uuids;
  std::string reversed;
  for (const std::string& block : model.blocks) {
    uuids.insert(uuidIn(summaryOf(block)));
    reversed =
        reference::le(static_cast<uint16>(block.size())) + block + reversed;
  }
  if (uuids.size() == model.blocks.size()) INVARIANT(hashOf(reversed) == hash);
}

// Calls visit(begin, end) for each entry that the blob has room for.
template <class Visit>
void forEachEntry(const std::string& blob, Visit visit) {
  size_t at = 2;
  for (const std::string& block : walk(blob).blocks) {
    visit(at, at + block.size());
    at += block.size() + 2;
  }
}

}  // namespace

void repair(std::string& input) {
  const std::string before = input;
  forEachEntry(before, [&](size_t begin, size_t end) {
    reference::Schema schema;
    reference::Reader(input, begin, end, true).schema(1, schema);
  });
}

std::vector<Window> schemasIn(const std::string& input) {
  std::vector<Window> windows;
  forEachEntry(input, [&](size_t begin, size_t end) {
    windows.push_back({begin, end, true});
  });
  return windows;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8* data, size_t size) {
  const std::string blob(reinterpret_cast<const char*>(data), size);
  const Walk model = walk(blob);
  checkWalk({data, size}, model);
  INVARIANT(!brindle_napi::calcNgConfigHash({data, size}, nullptr));

  const std::optional<std::string> hash = hashOf(blob);
  INVARIANT(hash ==
            (model.fault == Fault::NONE ? hashOf(model.blocks) : std::nullopt));
  if (hash) checkOrder(model, hash);
  return 0;
}
