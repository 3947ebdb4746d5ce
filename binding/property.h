#pragma once

#include <napi.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "foundation/safe_string.h"

// Reading objects that belong to callers, whose getters and proxy traps can run
// any code and throw.
namespace brindle_napi {

// The value of a property or element, read once. When the read throws, the
// exception is taken away and the answer is a symbol: a value of the wrong type
// for every use, and absent for none.
Napi::Value readProperty(Napi::Env env, napi_value object, const char* key);
Napi::Value readProperty(Napi::Env env, napi_value object, napi_value key);
Napi::Value readElement(Napi::Env env, napi_value array, uint32_t index);

// Whether a read threw.
inline bool isUnreadable(const Napi::Value& value) { return value.IsSymbol(); }

// Takes away an exception that a failed Node-API call left pending.
void clearPending(napi_env env);

// Null and undefined stand for no value.
inline bool isAbsent(const Napi::Value& value) {
  const napi_valuetype type = value.Type();
  return type == napi_undefined || type == napi_null;
}
// Whether the value is the boolean true; any other type counts as false.
inline bool isTrue(const Napi::Value& value) {
  return value.IsBoolean() && value.As<Napi::Boolean>().Value();
}
// The text of a string, zero bytes included; empty for anything else.
std::string textOf(const Napi::Value& value);
// Any value as a string, by JavaScript's own conversion; false when it throws.
bool convertToText(const Napi::Value& value, std::string& out);
// A text as the core's string, which ends before the first zero byte; good as
// long as the text, which it borrows.
inline SafeString viewOf(const std::string& text) {
  return SafeString::view(text.c_str(), std::strlen(text.c_str()));
}

// How many elements a typed array has; 0 for anything else.
size_t elementCount(const Napi::Value& value);

// Calls visit(i) for 0 to count - 1 until it answers false, and answers whether
// it never did. What visit makes in JavaScript is released every thousand calls
// or so.
template <class Visit>
bool inBatches(Napi::Env env, uint64 count, Visit&& visit) {
  constexpr uint64 BATCH = 1024;
  for (uint64 start = 0; start < count; start += BATCH) {
    const Napi::HandleScope scope(env);
    const uint64 stop = std::min(count, start + BATCH);
    for (uint64 i = start; i < stop; ++i) {
      if (!visit(i)) return false;
    }
  }
  return true;
}

// The same for visit(element) and the elements of an array, whose length is
// read once.
template <class Visit>
bool forEachElement(Napi::Env env, const Napi::Value& array, Visit&& visit) {
  return inBatches(env, array.As<Napi::Array>().Length(), [&](uint64 i) {
    return visit(readElement(env, array, static_cast<uint32>(i)));
  });
}

}  // namespace brindle_napi
