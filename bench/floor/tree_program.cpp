#include "bench/floor/tree_program.h"

namespace floor_bench {

namespace {

class Recorder {
 public:
  Recorder(napi_env e, TreeProgram& out) : env(e), program(out) {}

  void record(napi_value value, uint32_t key) {
    Node node;
    node.key = key;
    switch (get<napi_valuetype>(env, napi_typeof, value)) {
      case napi_number:
        node.kind = Kind::NUMBER;
        napi_get_value_double(env, value, &node.number);
        break;
      case napi_bigint:
        node.kind = Kind::BIGINT;
        recordBigInt(value, node);
        break;
      case napi_boolean:
        node.kind = Kind::BOOLEAN;
        napi_get_value_bool(env, value, &node.flag);
        break;
      case napi_string:
        node.kind = Kind::TEXT;
        node.first = intern(textOf(env, value));
        break;
      default:
        return recordObject(value, node);
    }
    program.nodes.push_back(node);
  }

 private:
  uint32_t intern(const std::string& text) {
    const auto index = static_cast<uint32_t>(program.texts.size());
    const auto [at, isNew] = indices.emplace(text, index);
    if (isNew) {
      program.texts.push_back(text);
      program.uses.push_back(0);
    }
    return at->second;
  }

  uint32_t internKey(const std::string& text) {
    const uint32_t index = intern(text);
    ++program.uses[index];
    return index;
  }

  void recordBigInt(napi_value value, Node& node) {
    int sign = 0;
    size_t words = 1;
    napi_get_value_bigint_words(env, value, &sign, &words, &node.word);
    node.flag = sign != 0;
  }

  void recordObject(napi_value value, Node node) {
    if (get<bool>(env, napi_is_buffer, value)) return recordBytes(value, node);
    if (get<bool>(env, napi_is_array, value)) return recordArray(value, node);
    if (get<bool>(env, napi_has_named_property, value, "$json")) {
      return recordJson(value, node);
    }
    const napi_value keys = get(env, napi_get_property_names, value);
    node.count = get<uint32_t>(env, napi_get_array_length, keys);
    program.nodes.push_back(node);
    for (uint32_t i = 0; i < node.count; ++i) {
      const napi_value key = get(env, napi_get_element, keys, i);
      record(get(env, napi_get_property, value, key),
             internKey(textOf(env, key)));
    }
  }

  void recordBytes(napi_value value, Node node) {
    void* data = nullptr;
    size_t size = 0;
    napi_get_buffer_info(env, value, &data, &size);
    node.kind = Kind::BYTES;
    node.first = static_cast<uint32_t>(program.texts.size());
    program.texts.emplace_back(static_cast<const char*>(data), size);
    program.uses.push_back(0);
    program.nodes.push_back(node);
  }

  void recordArray(napi_value value, Node node) {
    node.kind = Kind::ARRAY;
    node.count = get<uint32_t>(env, napi_get_array_length, value);
    if (program.bulk && isLongListOfNumbers(value, node.count)) {
      node.kind = Kind::NUMBERS;
      node.first = static_cast<uint32_t>(program.numbers.size());
    }
    program.nodes.push_back(node);
    inBatches(env, node.count, [&](uint32_t i) {
      const napi_value item = get(env, napi_get_element, value, i);
      if (node.kind == Kind::ARRAY) return record(item, 0);
      program.numbers.push_back(get<double>(env, napi_get_value_double, item));
    });
  }

  bool isLongListOfNumbers(napi_value value, uint32_t count) {
    if (count <= MOST_ARGUMENTS) return false;
    const napi_value item = get(env, napi_get_element, value, 0u);
    return get<napi_valuetype>(env, napi_typeof, item) == napi_number;
  }

  void recordJson(napi_value value, Node node) {
    const napi_value patches = named(env, value, "patches");
    node.kind = Kind::JSON;
    node.first = intern(textOf(env, named(env, value, "$json")));
    node.count = get<uint32_t>(env, napi_get_array_length, patches);
    program.nodes.push_back(node);
    for (uint32_t i = 0; i < node.count; ++i) {
      const napi_value patch = get(env, napi_get_element, patches, i);
      record(get(env, napi_get_element, patch, 0u), 0);
      record(get(env, napi_get_element, patch, 1u), 0);
    }
  }

  napi_env env;
  TreeProgram& program;
  std::unordered_map<std::string, uint32_t> indices;
};

}  // namespace

TreeProgram* programOf(napi_env env, napi_value tree, bool bulk) {
  auto* program = new TreeProgram;
  program->bulk = bulk;
  Recorder(env, *program).record(tree, 0);
  return program;
}

}  // namespace floor_bench
