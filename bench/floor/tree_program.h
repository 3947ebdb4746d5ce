#pragma once

#include <cstdint>
#include <unordered_map>

#include "bench/floor/calls.h"

namespace floor_bench {

enum class Kind : uint8_t {
  OBJECT,
  ARRAY,
  NUMBERS,  // an array of numbers, made in bulk
  NUMBER,
  BIGINT,
  BOOLEAN,
  TEXT,
  BYTES,
  JSON
};

// Which member counts, the kind says. The children of an object, an array or a
// JSON text follow their parent.
struct Node {
  Kind kind = Kind::OBJECT;
  bool flag = false;   // the boolean; the sign of a BigInt
  uint32_t key = 0;    // index of the text under which the parent has it
  uint32_t count = 0;  // children
  uint32_t first = 0;  // index of the text, of the bytes or of the first number
  uint64_t word = 0;   // the magnitude of a BigInt
  double number = 0;
};

// A JavaScript tree laid out flat, so that making it again costs little more
// than the calls of Node-API.
//
// Objects of the form {$json: text, patches: [[[key, ...], value], ...]} stand
// for the tree that JSON.parse makes of the text, with values put in at the
// given paths. In the program each patch is an ARRAY of TEXTs and the value.
struct TreeProgram {
  std::vector<Node> nodes;
  std::vector<std::string> texts;  // each but once
  std::vector<uint32_t> uses;      // of each text as a key
  std::vector<double> numbers;
  bool bulk = false;  // arrays are made by one call each
};

// The most elements that are handed over as arguments of one call.
constexpr uint32_t MOST_ARGUMENTS = 128;

// `bulk`: whether arrays are made by one call each, those of many numbers as
// NUMBERS.
TreeProgram* programOf(napi_env env, napi_value tree, bool bulk);
napi_value buildTree(napi_env env, const TreeProgram& program);

}  // namespace floor_bench
