// validateBlock and parseMetaBlock: one packed block read.

#include "binding/block_reader.h"
#include "binding/buffers.h"
#include "binding/exports.h"
#include "binding/guard.h"
#include "binding/limits.h"
#include "binding/object_writer.h"
#include "binding/to_js.h"
#include "foundation/buffer.h"
#include "schema/schema_scan.h"

namespace brindle_napi {

namespace {

constexpr size_t VERSION_OFFSET = 4;

Refusal copyBlock(const Napi::CallbackInfo& info, const char* expects,
                  const char* tooLarge, gs::container<uint8>& bytes) {
  if (Refusal refusal = copyArgument(info, expects, bytes)) return refusal;
  return checkBlockSize(bytes.size, "block smaller than minimum header size",
                        tooLarge);
}

Refusal checkMagic(const gs::ConstBuf& bytes) {
  uint32 magic = 0;
  size_t offset = 0;
  Brindle::extractNumber(bytes, offset, magic);
  if (magic == META_MAGIC) return {};
  return {INVALID_MAGIC, "magic does not match META_MAGIC"};
}

Napi::Value ValidateBlock(const Napi::CallbackInfo& info) {
  static constexpr GuardTexts TEXTS = {
      "[brindle] validateBlock/unpack threw: %s\n",
      "[brindle] validateBlock/unpack threw unknown exception\n",
      "validateBlock internal failure"};
  const Napi::Env env = info.Env();
  return guarded(env, TEXTS, [&](Napi::Value& value) -> Refusal {
    gs::container<uint8> bytes;
    if (Refusal refusal =
            copyBlock(info, "validateBlock expects a Buffer",
                      "block exceeds MAX_META_BLOCK_BYTES (65536)", bytes)) {
      return refusal;
    }
    if (Refusal refusal = checkMagic(bytes)) return refusal;
    if (!Brindle::scanSchema(bytes, nullptr) &&
        !Brindle::Meta::unpack(bytes, 0, nullptr)) {
      return unpackFailed();
    }

    ObjectWriter answer(env);
    const auto size = static_cast<double>(bytes.size);
    answer.add("size", Napi::Number::New(env, size));
    answer.add("version", Napi::Number::New(env, bytes[VERSION_OFFSET]));
    value = answer.finish();
    return {};
  });
}

Napi::Value ParseMetaBlock(const Napi::CallbackInfo& info) {
  static constexpr GuardTexts TEXTS = {
      "[brindle] parseMetaBlock threw: %s\n",
      "[brindle] parseMetaBlock threw unknown exception\n",
      "parseMetaBlock internal failure"};
  const Napi::Env env = info.Env();
  return guarded(env, TEXTS, [&](Napi::Value& value) -> Refusal {
    gs::container<uint8> bytes;
    if (Refusal refusal = copyBlock(info, "parseMetaBlock expects a Buffer",
                                    "block exceeds size cap", bytes)) {
      return refusal;
    }
    Block block;
    if (!readBlock(bytes, block)) return unpackFailed();
    value = metaBlockToDTO(Engine(env), *block.meta, block.record, bytes.data,
                           bytes.size);
    return {};
  });
}

}  // namespace

void addReadExports(Napi::Env env, Napi::Object exports) {
  exports.Set("validateBlock", Napi::Function::New(env, ValidateBlock));
  exports.Set("parseMetaBlock", Napi::Function::New(env, ParseMetaBlock));
}

}  // namespace brindle_napi
