#pragma once

#include <napi.h>

#include <string_view>

#include "binding/refusal.h"

// The result envelope of every data export: {ok: true, value} or
// {ok: false, error: {code, message, blockIndex?, offset?}}, keys in that
// order.
namespace brindle_napi {

Napi::Value Ok(Napi::Env env, Napi::Value value);

// `blockIndex` appears when it is 0 or more, `offset` when it is not 0.
Napi::Value Err(Napi::Env env, const char* code, std::string_view message,
                int blockIndex, size_t offset);

}  // namespace brindle_napi
