#pragma once

#include <functional>

#include "schema/field_value.h"

namespace Brindle {

// Called with the name and value of a constant.
using ConstantVisitor =
    std::function<void(const gs::ConstBuf& name, const FieldValue& value)>;

// Reads a packed schema (see meta_header.h) without building it, in a third of
// the time that Meta::unpack(buffer, 0, nullptr) takes. True only if that
// accepts it, too; `visit` has then been called for each constant of the top
// level, whose names all differ and hold no zero byte.
//
// False, and nothing printed, for all other schemas and for a few that are
// unusual: equal names, constants of enum fields. What was visited by then is
// void; ask Meta::unpack.
bool scanSchema(const gs::ConstBuf& buffer, const ConstantVisitor& visit);

}  // namespace Brindle
