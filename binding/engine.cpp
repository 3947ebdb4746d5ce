#include "binding/engine.h"

#include "binding/guard.h"
#include "binding/make_value.h"

namespace brindle_napi {

namespace {

napi_value call(napi_env env, napi_value function, napi_value receiver,
                const napi_value* arguments, size_t count) {
  napi_value result = nullptr;
  throwUnlessOk(env, napi_call_function(env, receiver, function, count,
                                        arguments, &result));
  return result;
}

}  // namespace

napi_value lookUp(napi_env env, std::initializer_list<const char*> path) {
  napi_value found = made(env, napi_get_global);
  for (const char* name : path) {
    found = made(env, napi_get_named_property, found, name);
  }
  return found;
}

napi_value callFunction(napi_env env, napi_value function, napi_value receiver,
                        std::initializer_list<napi_value> arguments) {
  return call(env, function, receiver, arguments.begin(), arguments.size());
}

Engine::Engine(napi_env e)
    : env(e),
      jsonParse(lookUp(e, {"JSON", "parse"})),
      array(lookUp(e, {"Array"})) {}

napi_value Engine::parseJson(std::string_view text) const {
  return callFunction(env, jsonParse, made(env, napi_get_undefined),
                      {stringToNapi(env, text)});
}

napi_value Engine::arrayOf(const napi_value* elements, size_t count) const {
  return call(env, array, made(env, napi_get_undefined), elements, count);
}

}  // namespace brindle_napi
