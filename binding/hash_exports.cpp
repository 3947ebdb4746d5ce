// calcNgConfigHash: the fingerprint of a configuration blob.

#include "binding/buffers.h"
#include "binding/config_hash.h"
#include "binding/exports.h"
#include "binding/guard.h"
#include "binding/limits.h"
#include "binding/to_js.h"
#include "foundation/sha256.h"

namespace brindle_napi {

namespace {

Napi::Value CalcNgConfigHash(const Napi::CallbackInfo& info) {
  static constexpr GuardTexts TEXTS = {
      "[brindle] calcNgConfigHash threw: %s\n",
      "[brindle] calcNgConfigHash threw unknown exception\n",
      "calcNgConfigHash internal failure"};
  const Napi::Env env = info.Env();
  return guarded(env, TEXTS, [&](Napi::Value& value) -> Refusal {
    gs::container<uint8> blob;
    if (Refusal refusal =
            copyArgument(info, "calcNgConfigHash expects a Buffer", blob)) {
      return refusal;
    }
    if (blob.size > MAX_CONFIG_BLOB_BYTES) {
      return {SIZE_LIMIT_EXCEEDED, "blob exceeds MAX_CONFIG_BLOB_BYTES"};
    }
    uint8 digest[Sha256::SIZE];
    if (!calcNgConfigHash(blob, digest)) {
      return {CORRUPTED_META,
              "blob malformed (truncated / invalid block size / bad Meta)"};
    }
    value = byteArrayToBuffer(env, {digest, sizeof digest});
    return {};
  });
}

}  // namespace

void addHashExports(Napi::Env env, Napi::Object exports) {
  exports.Set("calcNgConfigHash", Napi::Function::New(env, CalcNgConfigHash));
}

}  // namespace brindle_napi
