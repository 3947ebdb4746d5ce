#pragma once

#include <napi.h>

#include <string_view>
#include <vector>

#include "binding/guard.h"
#include "foundation/safe_string.h"

namespace brindle_napi {

// A JavaScript string of the bytes, zero bytes included; what is not UTF-8
// becomes U+FFFD.
inline napi_value stringToNapi(napi_env env, std::string_view text) {
  napi_value made = nullptr;
  throwUnlessOk(env,
                napi_create_string_utf8(env, text.data(), text.size(), &made));
  return made;
}
inline napi_value textToNapi(napi_env env, const SafeString& text) {
  return stringToNapi(env, {text.c_str(), text.length()});
}

// Builds a plain object. Properties are defined, not set, so that a name that
// comes from data, such as __proto__, becomes an own property like any other. A
// name given twice keeps its place and takes the later value.
class ObjectWriter {
 public:
  explicit ObjectWriter(napi_env e) : env(e) {
    throwUnlessOk(env, napi_create_object(env, &object));
  }

  void add(const char* name, napi_value value) {
    properties.push_back({name, nullptr, nullptr, nullptr, nullptr, value,
                          napi_default_jsproperty, nullptr});
  }
  void add(const SafeString& name, napi_value value) {
    properties.push_back({nullptr, textToNapi(env, name), nullptr, nullptr,
                          nullptr, value, napi_default_jsproperty, nullptr});
  }

  // Calls addOne(element) for each element of a list that may be long. What it
  // makes is released as soon as the properties it adds are defined.
  template <class List, class AddOne>
  void addEach(const List& list, AddOne&& addOne) {
    constexpr int BATCH = 64;
    for (auto at = list.begin(); at != list.end();) {
      const Napi::HandleScope scope(env);
      for (int i = 0; i < BATCH && at != list.end(); ++i, ++at) addOne(*at);
      finish();
    }
  }

  // The object with all that has been added.
  Napi::Object finish() {
    throwUnlessOk(env, napi_define_properties(env, object, properties.size(),
                                              properties.data()));
    properties.clear();
    return {env, object};
  }

 private:
  napi_env env;
  napi_value object = nullptr;
  std::vector<napi_property_descriptor> properties;
};

}  // namespace brindle_napi
