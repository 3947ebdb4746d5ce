#include <algorithm>
#include <array>

#include "bench/floor/tree_program.h"

namespace floor_bench {

namespace {

class Builder {
 public:
  Builder(napi_env e, const TreeProgram& given)
      : env(e), program(given), texts(e, given.texts) {}

  napi_value build() {
    const Node& node = program.nodes[next++];
    switch (node.kind) {
      case Kind::OBJECT:
        return object(node);
      case Kind::ARRAY:
        return array(node);
      case Kind::NUMBERS:
        return numbers(node);
      case Kind::NUMBER:
        return get(env, napi_create_double, node.number);
      case Kind::BIGINT:
        return get(env, napi_create_bigint_words, int{node.flag}, size_t{1},
                   &node.word);
      case Kind::BOOLEAN:
        return get(env, napi_get_boolean, node.flag);
      case Kind::TEXT:
        return texts[node.first];
      case Kind::BYTES:
        return bytes(program.texts[node.first]);
      default:
        return json(node);
    }
  }

 private:
  napi_value object(const Node& node) {
    constexpr uint32_t BATCH = 64;
    const napi_value made = get(env, napi_create_object);
    for (uint32_t done = 0; done < node.count; done += BATCH) {
      define(made, std::min(BATCH, node.count - done));
    }
    return made;
  }

  void define(napi_value made, uint32_t count) {
    std::array<napi_property_descriptor, 64> properties;
    for (uint32_t i = 0; i < count; ++i) {
      // A name that comes once is best left to the engine to find.
      const uint32_t key = program.nodes[next].key;
      const bool once = program.uses[key] == 1;
      properties[i] = {once ? program.texts[key].c_str() : nullptr,
                       once ? nullptr : texts[key],
                       nullptr,
                       nullptr,
                       nullptr,
                       build(),
                       napi_default_jsproperty,
                       nullptr};
    }
    napi_define_properties(env, made, count, properties.data());
  }

  napi_value array(const Node& node) {
    if (program.bulk && node.count != 1 && node.count <= MOST_ARGUMENTS) {
      std::array<napi_value, MOST_ARGUMENTS> elements;
      for (uint32_t i = 0; i < node.count; ++i) elements[i] = build();
      const napi_value undefined = get(env, napi_get_undefined);
      return get(env, napi_call_function, undefined, arrayFunction(),
                 size_t{node.count}, elements.data());
    }
    const napi_value made =
        get(env, napi_create_array_with_length, size_t{node.count});
    for (uint32_t i = 0; i < node.count; ++i) {
      napi_set_element(env, made, i, build());
    }
    return made;
  }

  // Object.values makes an Array of a typed array faster than anything else
  // that Node-API can reach.
  napi_value numbers(const Node& node) {
    void* data = nullptr;
    const napi_value memory =
        get(env, napi_create_arraybuffer, sizeof(double) * node.count, &data);
    std::copy_n(&program.numbers[node.first], node.count,
                static_cast<double*>(data));
    const napi_value typed =
        get(env, napi_create_typedarray, napi_float64_array, size_t{node.count},
            memory, size_t{0});
    return call(global(env, "Object"), "values", typed);
  }

  napi_value bytes(const std::string& content) {
    void* data = nullptr;
    const napi_value made = get(env, napi_create_buffer, content.size(), &data);
    content.copy(static_cast<char*>(data), content.size());
    return made;
  }

  napi_value json(const Node& node) {
    if (parse == nullptr) parse = named(env, global(env, "JSON"), "parse");
    const napi_value undefined = get(env, napi_get_undefined);
    const napi_value text = texts[node.first];
    const napi_value made =
        get(env, napi_call_function, undefined, parse, size_t{1}, &text);
    for (uint32_t i = 0; i < node.count; ++i) patch(made);
    return made;
  }

  // Puts a value in the place that the path before it names.
  void patch(napi_value object) {
    const uint32_t steps = program.nodes[next++].count;
    for (uint32_t i = 1; i < steps; ++i) {
      object = get(env, napi_get_property, object, build());
    }
    const napi_value key = build();
    napi_set_property(env, object, key, build());
  }

  napi_value arrayFunction() {
    if (constructor == nullptr) constructor = global(env, "Array");
    return constructor;
  }

  napi_value call(napi_value object, const char* name, napi_value argument) {
    return get(env, napi_call_function, object, named(env, object, name),
               size_t{1}, &argument);
  }

  napi_env env;
  const TreeProgram& program;
  Texts texts;
  napi_value constructor = nullptr;  // Array, once it has been looked up
  napi_value parse = nullptr;        // JSON.parse likewise
  size_t next = 0;
};

}  // namespace

napi_value buildTree(napi_env env, const TreeProgram& program) {
  return Builder(env, program).build();
}

}  // namespace floor_bench
