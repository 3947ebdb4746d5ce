#pragma once

#include <napi.h>

#include <initializer_list>
#include <string_view>

// Functions of the engine that do in one call what would take Node-API many.
// They are looked up when they are needed and not kept between calls of an
// export, so a program that replaces one gets what its replacement makes. Each
// function here throws a C++ exception, for the guard around the export, when
// the engine's throws.
namespace brindle_napi {

// What a path of property names, such as {"JSON", "parse"}, leads to from the
// global object.
napi_value lookUp(napi_env env, std::initializer_list<const char*> path);

napi_value callFunction(napi_env env, napi_value function, napi_value receiver,
                        std::initializer_list<napi_value> arguments);

// The functions that reading a block needs more than once.
class Engine {
 public:
  explicit Engine(napi_env e);

  // What JSON.parse makes of the text; bytes that are not UTF-8 become U+FFFD.
  napi_value parseJson(std::string_view text) const;
  // A new Array with these elements. REQUIRES: count is not 1, which would make
  // a number the length.
  napi_value arrayOf(const napi_value* elements, size_t count) const;

  const napi_env env;

 private:
  napi_value jsonParse;
  napi_value array;
};

}  // namespace brindle_napi
