#pragma once

#include "foundation/types.h"

namespace brindle_napi {

// Sizes that the exports accept, in bytes, limits included.
constexpr size_t MAX_CONFIG_BLOB_BYTES = 1048576;
constexpr size_t MAX_META_BLOCK_BYTES = 65536;
// More than the header alone: nothing useful is shorter.
constexpr size_t MIN_META_BLOCK_BYTES = 32;

// The first four bytes of every block, as a little-endian number.
constexpr uint32 META_MAGIC = 0x5343484D;

// A BlockSpec that nests deeper than this is taken for a runaway: far above
// what a block can hold, and far below what the stack of a worker thread can.
constexpr unsigned MAX_SPEC_NESTING = 64;
// Steps of work on one object of a caller: many times what the largest block
// takes, even of records that have values for few of their names.
constexpr size_t MAX_WORK_STEPS = 64 * MAX_META_BLOCK_BYTES;

}  // namespace brindle_napi
