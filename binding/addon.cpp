// The module: registration, and the two exports without an envelope. These have
// no guard, so nothing in them may throw.

#include <napi.h>

#include "binding/buffers.h"
#include "binding/exports.h"
#include "foundation/crc32.h"

namespace brindle_napi {

namespace {

Napi::Value AbiVersion(const Napi::CallbackInfo& info) {
  return Napi::String::New(info.Env(), "0.1.0");
}

// CRC-32/JAMCRC of a Buffer, 0 for anything else.
Napi::Value Crc32(const Napi::CallbackInfo& info) {
  uint32 crc = 0;
  if (info.Length() != 0 && isNodeBuffer(info[0])) {
    const gs::ConstBuf bytes = bytesOf(info[0]);
    crc = CRC32::crc(bytes.data, bytes.size, CRC32::POLY);
  }
  return Napi::Number::New(info.Env(), crc);
}

Napi::Object registerExports(Napi::Env env, Napi::Object exports) {
  exports.Set("abiVersion", Napi::Function::New(env, AbiVersion));
  exports.Set("crc32", Napi::Function::New(env, Crc32));
  addReadExports(env, exports);
  addBlobExports(env, exports);
  addWriteExports(env, exports);
  addHashExports(env, exports);
  return exports;
}

NODE_API_MODULE(brindle, registerExports)

}  // namespace

}  // namespace brindle_napi
