#pragma once

#include <cstdint>

#include "bench/floor/calls.h"

namespace floor_bench {

enum class Take : uint8_t {
  NOTHING,  // read and left
  TEXT,
  NUMBER,
  BIGINT,
  BOOLEAN,
  MEMBERS,   // an object: each of the reads that follow
  ENTRIES,   // the same for a record, whose own names are listed first
  ELEMENTS,  // an array: one read for each element
  NUMBERS    // an array of numbers, converted in bulk
};

struct Read {
  Take take = Take::NOTHING;
  uint32_t key = 0;    // index of the text of the property that is read
  uint32_t count = 0;  // reads that follow and belong to this one
};

// The reads of properties that buildBlock cannot do without, in its order.
//
// Recorded from a description: an array [[key, description], ...] stands for
// an object whose properties are read, {entries: [...]} for a record,
// {elements: [description, ...]} and {numbers: true} for arrays, and any other
// value for one like itself.
struct ReadProgram {
  std::vector<Read> reads;
  std::vector<std::string> texts;
};

ReadProgram* readsOf(napi_env env, napi_value description);
// Reads `object`; the result depends on every value that was read.
size_t readTree(napi_env env, const ReadProgram& program, napi_value object);

}  // namespace floor_bench
