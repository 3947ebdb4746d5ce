#pragma once

#include <string>

#include "foundation/types.h"

namespace brindle_napi {

// The codes of failure envelopes; there are no others.
inline constexpr char INVALID_ARGUMENT[] = "INVALID_ARGUMENT";
inline constexpr char SIZE_LIMIT_EXCEEDED[] = "SIZE_LIMIT_EXCEEDED";
inline constexpr char CORRUPTED_META[] = "CORRUPTED_META";
inline constexpr char INTERNAL[] = "INTERNAL";
inline constexpr char TRUNCATED[] = "TRUNCATED";
inline constexpr char BLOCK_TOO_LARGE[] = "BLOCK_TOO_LARGE";
inline constexpr char INVALID_MAGIC[] = "INVALID_MAGIC";
inline constexpr char UNKNOWN_FIELD_TYPE[] = "UNKNOWN_FIELD_TYPE";
inline constexpr char NOT_IMPLEMENTED[] = "NOT_IMPLEMENTED";

// Why a call is refused; true in conditions. A default one refuses nothing.
struct Refusal {
  const char* code = nullptr;
  std::string message;
  int blockIndex = -1;  // below 0: no block is concerned
  size_t offset = 0;    // 0: none is given

  explicit operator bool() const { return code != nullptr; }
};

// What a block whose schema cannot be read is answered with.
inline Refusal unpackFailed() {
  return {CORRUPTED_META, "Meta::unpack returned null"};
}

}  // namespace brindle_napi
