#pragma once

#include <napi.h>

// Each adds its functions to the exports object, in registration order.
namespace brindle_napi {

void addReadExports(Napi::Env env, Napi::Object exports);
void addBlobExports(Napi::Env env, Napi::Object exports);
void addWriteExports(Napi::Env env, Napi::Object exports);
void addHashExports(Napi::Env env, Napi::Object exports);

}  // namespace brindle_napi
