// parseConfigBlob: every block of a configuration blob read.

#include "binding/blob_walker.h"
#include "binding/block_reader.h"
#include "binding/buffers.h"
#include "binding/exports.h"
#include "binding/guard.h"
#include "binding/limits.h"
#include "binding/to_js.h"

namespace brindle_napi {

namespace {

// The refusal at the current entry; `offset` is where the fault lies.
Refusal refuse(const BlobWalker& walker, const char* code, const char* message,
               size_t offset) {
  return {code, message, static_cast<int>(walker.index()), offset};
}

Refusal refuseFault(const BlobWalker& walker) {
  const size_t offset = walker.offset();
  switch (walker.fault()) {
    case BlobWalker::Fault::NONE:
      break;
    case BlobWalker::Fault::ZERO_SIZE:
      return refuse(walker, CORRUPTED_META, "block size is zero", offset);
    case BlobWalker::Fault::BELOW_MINIMUM:
      return refuse(walker, TRUNCATED,
                    "block smaller than MIN_META_BLOCK_BYTES (32)", offset);
    case BlobWalker::Fault::PAST_END:
      return refuse(walker, TRUNCATED, "block extends past end of blob",
                    offset);
    case BlobWalker::Fault::TRAILING_BYTES:
      return refuse(walker, TRUNCATED, "trailing bytes after last block",
                    offset);
  }
  return {};
}

// Appends the current block to `blocks`.
Refusal addBlock(const Engine& engine, const BlobWalker& walker,
                 napi_value blocks) {
  const napi_env env = engine.env;
  const Napi::HandleScope scope(env);
  const gs::ConstBuf& bytes = walker.block();
  Block block;
  if (!readBlock(bytes, block)) {
    return refuse(walker, CORRUPTED_META, "Meta::unpack failed",
                  walker.blockOffset());
  }
  const Napi::Object dto =
      metaBlockToDTO(engine, *block.meta, block.record, bytes.data, bytes.size);
  throwUnlessOk(
      env, napi_set_element(env, blocks, static_cast<uint32_t>(walker.index()),
                            dto));
  return {};
}

Napi::Value ParseConfigBlob(const Napi::CallbackInfo& info) {
  static constexpr GuardTexts TEXTS = {
      "[brindle] parseConfigBlob threw: %s (blockIndex=%zu)\n",
      "[brindle] parseConfigBlob threw unknown exception (blockIndex=%zu)\n",
      "parseConfigBlob internal failure"};
  const Napi::Env env = info.Env();
  size_t blockIndex = 0;
  const auto parse = [&](Napi::Value& value) -> Refusal {
    gs::container<uint8> blob;
    if (Refusal refusal =
            copyArgument(info, "parseConfigBlob expects a Buffer", blob)) {
      return refusal;
    }
    if (blob.size > MAX_CONFIG_BLOB_BYTES) {
      return {SIZE_LIMIT_EXCEEDED,
              "blob exceeds MAX_CONFIG_BLOB_BYTES (1048576)"};
    }
    const Engine engine(env);
    value = Napi::Array::New(env);
    BlobWalker walker(blob);
    while (walker.next()) {
      blockIndex = walker.index();
      if (Refusal refusal = addBlock(engine, walker, value)) return refusal;
    }
    return refuseFault(walker);
  };
  return guarded(env, TEXTS, parse, &blockIndex);
}

}  // namespace

void addBlobExports(Napi::Env env, Napi::Object exports) {
  exports.Set("parseConfigBlob", Napi::Function::New(env, ParseConfigBlob));
}

}  // namespace brindle_napi
