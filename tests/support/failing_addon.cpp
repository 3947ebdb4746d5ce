// The module with two functions more, which let its allocations fail.

#include <napi.h>

#undef NODE_API_MODULE
#define NODE_API_MODULE(name, registerExports)
#include "binding/addon.cpp"
#include "tests/support/alloc_fail.h"

static void arm(const Napi::CallbackInfo& info) {
  alloc_fail::arm(info[0].As<Napi::Number>().Uint32Value(),
                  info[1].As<Napi::Boolean>().Value());
}

static Napi::Value disarm(const Napi::CallbackInfo& info) {
  return Napi::Boolean::New(info.Env(), alloc_fail::disarm());
}

static Napi::Object registerFailing(Napi::Env env, Napi::Object exports) {
  exports.Set("arm", Napi::Function::New(env, arm));
  exports.Set("disarm", Napi::Function::New(env, disarm));
  return brindle_napi::registerExports(env, exports);
}

NAPI_MODULE_INIT() {
  return Napi::RegisterModule(env, exports, registerFailing);
}
