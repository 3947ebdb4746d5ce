#pragma once

#include <napi.h>

#include <memory>
#include <string>
#include <string_view>

#include "binding/spec_keys.h"
#include "binding/work_budget.h"
#include "schema/meta.h"

namespace brindle_napi {

// Why a BlockSpec is refused: a code of the envelope, and a message that
// carries names as JavaScript gave them. Empty as long as nothing is wrong.
struct BuildError {
  const char* code = "";
  std::string message;
};

// The schema that a BlockSpec describes:
//   {metaName, hasCrc?, fields?: [{name, type, repeated?, enumOptions?,
//   nested?}],
//    metaFields?: [{name, type, value, repeated?, enumOptions?}]}
// Null, with `error` filled, at the first fault. Throws std::bad_alloc.
std::shared_ptr<Brindle::Meta> buildMetaSchema(Napi::Env env,
                                               const SpecKeys& keys,
                                               const Napi::Object& blockSpec,
                                               BuildError& error);

// The `fields` of a BlockSpec. True when `array` is that: an array, or
// undefined where it is left out. Else false, with `error` filled.
bool readFields(Napi::Env env, const Napi::Object& blockSpec,
                Napi::Value& array, BuildError& error);

// Appends [{key, code}, ...] to `entries`; absent is the same as empty. False
// at the first fault, with the entries before it appended, or when `budget` is
// spent. An entry that there is no memory for is left out.
bool readEnumOptions(Napi::Env env, const SpecKeys& keys,
                     const Napi::Value& options, Brindle::EnumMapping& entries,
                     WorkBudget& budget);

// The 13 names of fieldTypeToString, exactly. False, with `type` left alone,
// for any other text.
bool parseFieldType(std::string_view text, Brindle::FieldType& type);

// What a BlockSpec that makes too large a block is answered with.
inline constexpr char BUILT_TOO_LARGE[] =
    "built block exceeds MAX_META_BLOCK_BYTES (65536)";
// What a schema that cannot be packed is answered with.
BuildError packFailed();

}  // namespace brindle_napi
