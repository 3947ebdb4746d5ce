#pragma once

#include <napi.h>

#include "binding/envelope.h"

namespace brindle_napi {

// What one export says when something that must not fail failed.
struct GuardTexts {
  const char* threw;         // printf format: the message, then the block index
  const char* threwUnknown;  // printf format: anything, then the block index
  const char* failure;       // the message in the envelope
};

// Takes away the JavaScript exception that is pending, if any, and throws it as
// a C++ one: with its message where it has one, else of no known type.
void throwIfPending(Napi::Env env);
// The same after a Node-API call that failed, which may have left none behind.
void throwUnlessOk(napi_env env, napi_status status);

// The line and the envelope for the exception being handled.
Napi::Value answerCaught(Napi::Env env, const GuardTexts& texts,
                         const size_t* blockIndex) noexcept;

// The catch-all around every data export: runs body(value), which fills `value`
// or answers a refusal, and makes the envelope. No exception of either language
// gets past it. `blockIndex`, if given, counts the blocks as the body works.
template <class Body>
Napi::Value guarded(Napi::Env env, const GuardTexts& texts, Body&& body,
                    const size_t* blockIndex = nullptr) {
  try {
    Napi::Value value;
    const Refusal refusal = body(value);
    const Napi::Value envelope = refusal
                                     ? Err(env, refusal.code, refusal.message,
                                           refusal.blockIndex, refusal.offset)
                                     : Ok(env, value);
    throwIfPending(env);  // a message can be too long for JavaScript
    return envelope;
  } catch (...) {
    return answerCaught(env, texts, blockIndex);
  }
}

}  // namespace brindle_napi
