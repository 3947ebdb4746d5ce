#pragma once

#include <napi.h>

#include "binding/make_value.h"

namespace brindle_napi {

// The property names of a BlockSpec that are read many times, made once for a
// call: a read then need not find out each time which name is meant.
struct SpecKeys {
  explicit SpecKeys(napi_env env)
      : name(stringToNapi(env, "name")),
        type(stringToNapi(env, "type")),
        value(stringToNapi(env, "value")),
        repeated(stringToNapi(env, "repeated")),
        enumOptions(stringToNapi(env, "enumOptions")),
        nested(stringToNapi(env, "nested")),
        key(stringToNapi(env, "key")),
        code(stringToNapi(env, "code")) {}

  napi_value name;
  napi_value type;
  napi_value value;
  napi_value repeated;
  napi_value enumOptions;
  napi_value nested;
  napi_value key;
  napi_value code;
};

}  // namespace brindle_napi
