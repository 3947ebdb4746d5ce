#pragma once

#include <napi.h>

#include "binding/refusal.h"
#include "foundation/container.h"

// Bytes that come from JavaScript. Data exports take every view that Node-API's
// buffer test accepts, whatever its element type. The memory behind a view can
// move or vanish whenever JavaScript runs, so its address is asked for where it
// is used and never kept.
namespace brindle_napi {

// Copies the bytes into `out`, which then holds exactly these. False, with
// `out` unchanged, for anything but a view, and for a DataView.
bool bufferToByteArray(const Napi::Value& value, gs::container<uint8>& out);

// The bytes of any view, good until JavaScript runs again.
// REQUIRES: value.IsBuffer().
gs::ConstBuf bytesOf(const Napi::Value& value);

// Whether the value is a Buffer of Node.js, which not every view is.
bool isNodeBuffer(const Napi::Value& value);

// Copies the first argument in; `expects` is the refusal of anything else.
Refusal copyArgument(const Napi::CallbackInfo& info, const char* expects,
                     gs::container<uint8>& out);

// Refuses a block that is too short or too long, in the export's own words.
Refusal checkBlockSize(size_t size, const char* tooShort, const char* tooLarge);

}  // namespace brindle_napi
