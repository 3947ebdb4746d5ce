#pragma once

#include <napi.h>

#include <string_view>

#include "binding/guard.h"
#include "foundation/safe_string.h"

// JavaScript values made by Node-API. A call that fails throws a C++ exception,
// for the guard around the export.
namespace brindle_napi {

// Makes a value with `create`, a function of Node-API, and its arguments.
template <class... Parameters, class... Arguments>
napi_value made(napi_env env, napi_status (*create)(napi_env, Parameters...),
                Arguments... arguments) {
  napi_value value = nullptr;
  throwUnlessOk(env, create(env, arguments..., &value));
  return value;
}

// A JavaScript string of the bytes, zero bytes included; what is not UTF-8
// becomes U+FFFD.
inline napi_value stringToNapi(napi_env env, std::string_view text) {
  return made(env, napi_create_string_utf8, text.data(), text.size());
}
inline napi_value textToNapi(napi_env env, const SafeString& text) {
  return stringToNapi(env, {text.c_str(), text.length()});
}

}  // namespace brindle_napi
