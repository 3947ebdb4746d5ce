#include "binding/property.h"

namespace brindle_napi {

namespace {

Napi::Value valueOf(napi_env env, napi_status status, napi_value value) {
  if (status == napi_ok) return {env, value};
  clearPending(env);
  napi_value unusable = nullptr;
  napi_create_symbol(env, nullptr, &unusable);
  return {env, unusable};
}

}  // namespace

Napi::Value readProperty(Napi::Env env, napi_value object, const char* key) {
  napi_value value = nullptr;
  const napi_status status = napi_get_named_property(env, object, key, &value);
  return valueOf(env, status, value);
}

Napi::Value readProperty(Napi::Env env, napi_value object, napi_value key) {
  napi_value value = nullptr;
  const napi_status status = napi_get_property(env, object, key, &value);
  return valueOf(env, status, value);
}

Napi::Value readElement(Napi::Env env, napi_value array, uint32_t index) {
  napi_value value = nullptr;
  const napi_status status = napi_get_element(env, array, index, &value);
  return valueOf(env, status, value);
}

void clearPending(napi_env env) {
  napi_value ignored = nullptr;
  napi_get_and_clear_last_exception(env, &ignored);
}

std::string textOf(const Napi::Value& value) {
  // Short texts take one call. One that may have been cut is read again: at
  // most the last character, of up to 4 bytes, finds no room.
  char room[256];
  size_t length = 0;
  if (napi_get_value_string_utf8(value.Env(), value, room, sizeof room,
                                 &length) != napi_ok) {
    return {};
  }
  if (length < sizeof room - 4) return {room, length};
  return value.As<Napi::String>().Utf8Value();
}

bool convertToText(const Napi::Value& value, std::string& out) {
  napi_value text = nullptr;
  if (napi_coerce_to_string(value.Env(), value, &text) != napi_ok) {
    clearPending(value.Env());
    return false;
  }
  out = textOf({value.Env(), text});
  return true;
}

size_t elementCount(const Napi::Value& value) {
  size_t count = 0;
  // Leaves it at 0 when it fails.
  napi_get_typedarray_info(value.Env(), value, nullptr, &count, nullptr,
                           nullptr, nullptr);
  return count;
}

}  // namespace brindle_napi
