#pragma once

#include <napi.h>

#include <cstring>
#include <iterator>

#include "binding/make_value.h"

namespace brindle_napi {

// Builds a plain object. Properties are defined, not set, so that a name that
// comes from data, such as __proto__, becomes an own property like any other. A
// name given twice keeps its place and takes the later value.
class ObjectWriter {
 public:
  explicit ObjectWriter(napi_env e)
      : env(e), object(made(e, napi_create_object)) {}

  // The name has to outlive the next call of finish().
  void add(const char* name, napi_value value) { add(name, nullptr, value); }
  void add(const SafeString& name, napi_value value) {
    // The engine finds a zero-terminated name among those it knows; a string
    // made of it first would be one more allocation.
    const bool zeroInside = std::strlen(name.c_str()) != name.length();
    if (zeroInside) return add(nullptr, textToNapi(env, name), value);
    add(name.c_str(), nullptr, value);
  }

  // Calls addOne(element) for each element of a list that may be long. What it
  // makes is released as soon as the properties it adds are defined.
  template <class List, class AddOne>
  void addEach(const List& list, AddOne&& addOne) {
    constexpr int BATCH = 1024;
    for (auto at = list.begin(); at != list.end();) {
      const Napi::HandleScope scope(env);
      for (int i = 0; i < BATCH && at != list.end(); ++i, ++at) addOne(*at);
      finish();
    }
  }

  // The object with all that has been added.
  Napi::Object finish() {
    throwUnlessOk(env,
                  napi_define_properties(env, object, pending, properties));
    pending = 0;
    return {env, object};
  }

 private:
  void add(const char* name, napi_value key, napi_value value) {
    if (pending == std::size(properties)) finish();
    properties[pending++] = {
        name,   key, nullptr, nullptr, nullptr, value, napi_default_jsproperty,
        nullptr};
  }

  napi_env env;
  napi_value object;
  size_t pending = 0;
  napi_property_descriptor properties[32];
};

}  // namespace brindle_napi
