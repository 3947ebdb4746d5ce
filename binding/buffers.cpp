#include "binding/buffers.h"

#include "binding/limits.h"
#include "binding/property.h"

namespace brindle_napi {

bool bufferToByteArray(const Napi::Value& value, gs::container<uint8>& out) {
  if (value.IsEmpty() || !value.IsBuffer()) return false;
  // Fails for a DataView, which is no typed array.
  if (napi_get_typedarray_info(value.Env(), value, nullptr, nullptr, nullptr,
                               nullptr, nullptr) != napi_ok) {
    return false;
  }
  const gs::ConstBuf bytes = bytesOf(value);
  out.assign(bytes.data, bytes.size);
  return true;
}

gs::ConstBuf bytesOf(const Napi::Value& value) {
  void* data = nullptr;
  size_t size = 0;
  napi_get_buffer_info(value.Env(), value, &data, &size);
  return {static_cast<const uint8*>(data), size};
}

bool isNodeBuffer(const Napi::Value& value) {
  if (value.IsEmpty() || !value.IsBuffer()) return false;
  // The prototype is taken from a Buffer made here: the global one may have
  // been replaced.
  const napi_env env = value.Env();
  napi_value sample = nullptr;
  napi_value wanted = nullptr;
  if (napi_create_buffer(env, 0, nullptr, &sample) != napi_ok ||
      napi_get_prototype(env, sample, &wanted) != napi_ok) {
    clearPending(env);
    return false;
  }
  napi_value link = value;
  bool same = false;
  while (!same && napi_get_prototype(env, link, &link) == napi_ok &&
         Napi::Value(env, link).IsObject()) {
    napi_strict_equals(env, link, wanted, &same);
  }
  return same;
}

Refusal copyArgument(const Napi::CallbackInfo& info, const char* expects,
                     gs::container<uint8>& out) {
  if (info.Length() == 0 || !info[0].IsBuffer()) {
    return {INVALID_ARGUMENT, expects};
  }
  if (!bufferToByteArray(info[0], out)) {
    return {INVALID_ARGUMENT, "failed to copy-in buffer"};
  }
  return {};
}

Refusal checkBlockSize(size_t size, const char* tooShort,
                       const char* tooLarge) {
  if (size < MIN_META_BLOCK_BYTES) return {TRUNCATED, tooShort};
  if (size > MAX_META_BLOCK_BYTES) return {BLOCK_TOO_LARGE, tooLarge};
  return {};
}

}  // namespace brindle_napi
