#pragma once

#include <node_api.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Shorthand for the calls of Node-API. None is checked: what comes of them is
// compared with what it should be before anything is timed.
namespace floor_bench {

// What `call` stores in its last argument.
template <class Result = napi_value, class Call, class... Arguments>
Result get(napi_env env, Call call, Arguments... arguments) {
  Result result{};
  call(env, arguments..., &result);
  return result;
}

inline napi_value named(napi_env env, napi_value object, const char* name) {
  return get(env, napi_get_named_property, object, name);
}

inline napi_value global(napi_env env, const char* name) {
  return named(env, get(env, napi_get_global), name);
}

inline std::string textOf(napi_env env, napi_value value) {
  const auto size =
      get<size_t>(env, napi_get_value_string_utf8, value, nullptr, size_t{0});
  std::string text(size, '\0');
  napi_get_value_string_utf8(env, value, text.data(), size + 1, nullptr);
  return text;
}

// {ok: true, value}, as the module answers.
inline napi_value envelope(napi_env env, napi_value value) {
  const napi_value object = get(env, napi_create_object);
  const napi_value yes = get(env, napi_get_boolean, true);
  const napi_property_descriptor properties[] = {
      {"ok", nullptr, nullptr, nullptr, nullptr, yes, napi_default_jsproperty,
       nullptr},
      {"value", nullptr, nullptr, nullptr, nullptr, value,
       napi_default_jsproperty, nullptr}};
  napi_define_properties(env, object, 2, properties);
  return object;
}

// Strings that are made at most once in a call.
class Texts {
 public:
  Texts(napi_env e, const std::vector<std::string>& given)
      : env(e), texts(given), made(given.size()) {}

  napi_value operator[](size_t index) {
    napi_value& value = made[index];
    if (value == nullptr) {
      const std::string& text = texts[index];
      napi_create_string_utf8(env, text.data(), text.size(), &value);
    }
    return value;
  }

 private:
  napi_env env;
  const std::vector<std::string>& texts;
  std::vector<napi_value> made;
};

// An object that lives as long as the JavaScript value that holds it.
template <class T>
napi_value hold(napi_env env, T* owned) {
  const auto release = [](napi_env, void* data, void*) {
    delete static_cast<T*>(data);
  };
  return get(env, napi_create_external, static_cast<void*>(owned),
             napi_finalize{release}, nullptr);
}
template <class T>
const T& held(napi_env env, napi_value handle) {
  return *static_cast<T*>(get<void*>(env, napi_get_value_external, handle));
}

// Calls one(i) for 0 <= i < count; handles are given back every 64 calls.
template <class One>
void inBatches(napi_env env, uint32_t count, One&& one) {
  constexpr uint32_t BATCH = 64;
  for (uint32_t i = 0; i < count;) {
    const auto scope = get<napi_handle_scope>(env, napi_open_handle_scope);
    const uint32_t end = count - i < BATCH ? count : i + BATCH;
    for (; i < end; ++i) one(i);
    napi_close_handle_scope(env, scope);
  }
}

}  // namespace floor_bench
