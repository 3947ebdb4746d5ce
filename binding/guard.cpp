#include "binding/guard.h"

#include <stdexcept>

#include "binding/property.h"
#include "foundation/diagnostics.h"

namespace brindle_napi {

namespace {

// A thrown value that has no message.
struct UnknownException {};

}  // namespace

void throwIfPending(Napi::Env env) {
  if (!env.IsExceptionPending()) return;
  napi_value exception = nullptr;
  napi_get_and_clear_last_exception(env, &exception);
  const Napi::Value message = readProperty(env, exception, "message");
  if (!message.IsString()) throw UnknownException();
  throw std::runtime_error(message.As<Napi::String>().Utf8Value());
}

void throwUnlessOk(napi_env env, napi_status status) {
  if (status == napi_ok) return;
  throwIfPending(env);
  throw std::runtime_error("Node-API call failed");
}

Napi::Value answerCaught(Napi::Env env, const GuardTexts& texts,
                         const size_t* blockIndex) noexcept {
  const size_t block = blockIndex == nullptr ? 0 : *blockIndex;
  try {
    throw;
  } catch (const std::exception& exception) {
    printTo(stderr, texts.threw, exception.what(), block);
  } catch (...) {
    printTo(stderr, texts.threwUnknown, block);
  }
  return Err(env, INTERNAL, texts.failure,
             blockIndex == nullptr ? -1 : static_cast<int>(block), 0);
}

}  // namespace brindle_napi
