#include "binding/number_arrays.h"

#include <cstring>
#include <new>

#include "binding/engine.h"
#include "binding/make_value.h"
#include "binding/property.h"

namespace brindle_napi {

namespace {

struct TypedArray {
  TypedArray(napi_env env, napi_typedarray_type type, size_t count, size_t size)
      : value(made(env, napi_create_typedarray, type, count,
                   made(env, napi_create_arraybuffer, count * size, &memory),
                   size_t{0})) {}

  void* memory = nullptr;
  napi_value value;
};

// What `call` answers, or null when a function of the engine throws.
template <class Call>
auto orNull(Call&& call) -> decltype(call()) {
  try {
    return call();
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    return nullptr;
  }
}

bool areFinite(napi_env env, napi_value copy) {
  napi_value every = lookUp(env, {"Array", "prototype", "every"});
  napi_value isFinite = lookUp(env, {"Number", "isFinite"});
  return isTrue({env, callFunction(env, every, copy, {isFinite})});
}

const double* readNumbers(napi_env env, napi_value copy, size_t count) {
  const TypedArray typed(env, napi_float64_array, count, sizeof(double));
  napi_value set = made(env, napi_get_named_property, typed.value, "set");
  callFunction(env, set, typed.value, {copy});
  // A replacement of set() may have detached the memory.
  if (elementCount({env, typed.value}) != count) return nullptr;
  return static_cast<const double*>(typed.memory);
}

}  // namespace

napi_value numbersToArray(napi_env env, napi_typedarray_type type,
                          const void* data, size_t count, size_t size) {
  const TypedArray typed(env, type, count, size);
  if (count != 0) std::memcpy(typed.memory, data, count * size);
  napi_value undefined = made(env, napi_get_undefined);
  return callFunction(env, lookUp(env, {"Object", "values"}), undefined,
                      {typed.value});
}

napi_value copyOf(napi_env env, napi_value array) {
  return orNull([&] {
    napi_value undefined = made(env, napi_get_undefined);
    return callFunction(env, lookUp(env, {"Reflect", "apply"}), undefined,
                        {lookUp(env, {"Array"}), undefined, array});
  });
}

const double* numbersOf(napi_env env, napi_value copy, size_t count) {
  return orNull([&] {
    return areFinite(env, copy) ? readNumbers(env, copy, count) : nullptr;
  });
}

}  // namespace brindle_napi
