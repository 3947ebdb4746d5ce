#pragma once

#include <napi.h>

#include <concepts>
#include <type_traits>

#include "schema/field_value.h"

// Long arrays of numbers, moved as a whole by way of a typed array.
namespace brindle_napi {

// The element types that a typed array holds as we do; the codes of enums
// count, bools would come out as numbers.
template <class T>
concept InTypedArray =
    std::is_arithmetic_v<T> || std::same_as<T, Brindle::EnumType>;

template <InTypedArray T>
constexpr napi_typedarray_type typedArrayOf() {
  if constexpr (std::same_as<T, int8>) return napi_int8_array;
  if constexpr (std::same_as<T, int16>) return napi_int16_array;
  if constexpr (std::same_as<T, int32>) return napi_int32_array;
  if constexpr (std::same_as<T, int64>) return napi_bigint64_array;
  if constexpr (std::same_as<T, uint16>) return napi_uint16_array;
  if constexpr (std::same_as<T, uint32>) return napi_uint32_array;
  if constexpr (std::same_as<T, uint64>) return napi_biguint64_array;
  if constexpr (std::same_as<T, float>) return napi_float32_array;
  return napi_uint8_array;
}

// A new Array of the numbers, or BigInts, that a typed array of that type has:
// `count` elements of `size` bytes at `data`. Throws a C++ exception, for the
// guard around the export, when the engine does.
napi_value numbersToArray(napi_env env, napi_typedarray_type type,
                          const void* data, size_t count, size_t size);

// A copy of an Array, each element read once, in order; none of the copy's is
// an accessor. Null when an element throws or the stack has no room for so many
// arguments. REQUIRES: the length is not 1.
napi_value copyOf(napi_env env, napi_value array);

// The `count` elements of a copy if they are finite numbers all, good until the
// handle scope ends; else null.
const double* numbersOf(napi_env env, napi_value copy, size_t count);

}  // namespace brindle_napi
