#include "binding/envelope.h"

namespace brindle_napi {

namespace {

// Defined, not set: a setter planted in Object.prototype is not called. Without
// C++ exceptions, as the guard answers with Err while it handles one.
void define(Napi::Object object, const char* key, Napi::Value value) {
  object.DefineProperty(
      Napi::PropertyDescriptor::Value(key, value, napi_default_jsproperty));
}

}  // namespace

Napi::Value Ok(Napi::Env env, Napi::Value value) {
  Napi::Object envelope = Napi::Object::New(env);
  define(envelope, "ok", Napi::Boolean::New(env, true));
  define(envelope, "value", value);
  return envelope;
}

Napi::Value Err(Napi::Env env, const char* code, std::string_view message,
                int blockIndex, size_t offset) {
  Napi::Object error = Napi::Object::New(env);
  define(error, "code", Napi::String::New(env, code));
  define(error, "message",
         Napi::String::New(env, message.data(), message.size()));
  if (blockIndex >= 0) {
    define(error, "blockIndex", Napi::Number::New(env, blockIndex));
  }
  if (offset != 0) {
    define(error, "offset",
           Napi::Number::New(env, static_cast<double>(offset)));
  }
  Napi::Object envelope = Napi::Object::New(env);
  define(envelope, "ok", Napi::Boolean::New(env, false));
  define(envelope, "error", error);
  return envelope;
}

}  // namespace brindle_napi
