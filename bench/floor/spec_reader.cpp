#include "bench/floor/spec_reader.h"

#include <array>

namespace floor_bench {

namespace {

class Recorder {
 public:
  Recorder(napi_env e, ReadProgram& out) : env(e), program(out) {}

  void record(napi_value description, uint32_t key) {
    switch (get<napi_valuetype>(env, napi_typeof, description)) {
      case napi_string:
        return add(Take::TEXT, key);
      case napi_number:
        return add(Take::NUMBER, key);
      case napi_bigint:
        return add(Take::BIGINT, key);
      case napi_boolean:
        return add(Take::BOOLEAN, key);
      case napi_object:
        return recordObject(description, key);
      default:
        return add(Take::NOTHING, key);
    }
  }

 private:
  void add(Take take, uint32_t key, uint32_t count = 0) {
    program.reads.push_back({take, key, count});
  }

  bool has(napi_value object, const char* name) {
    return get<bool>(env, napi_has_named_property, object, name);
  }

  void recordObject(napi_value description, uint32_t key) {
    // Asked first, as arrays inherit something called entries.
    if (get<bool>(env, napi_is_array, description)) {
      return recordMembers(description, Take::MEMBERS, key);
    }
    if (has(description, "numbers")) return add(Take::NUMBERS, key);
    if (has(description, "entries")) {
      return recordMembers(named(env, description, "entries"), Take::ENTRIES,
                           key);
    }
    recordElements(named(env, description, "elements"), key);
  }

  void recordMembers(napi_value members, Take take, uint32_t key) {
    const auto count = get<uint32_t>(env, napi_get_array_length, members);
    add(take, key, count);
    for (uint32_t i = 0; i < count; ++i) {
      const napi_value member = get(env, napi_get_element, members, i);
      const auto name = static_cast<uint32_t>(program.texts.size());
      program.texts.push_back(
          textOf(env, get(env, napi_get_element, member, 0u)));
      record(get(env, napi_get_element, member, 1u), name);
    }
  }

  void recordElements(napi_value elements, uint32_t key) {
    const auto count = get<uint32_t>(env, napi_get_array_length, elements);
    add(Take::ELEMENTS, key, count);
    inBatches(env, count, [&](uint32_t i) {
      record(get(env, napi_get_element, elements, i), 0);
    });
  }

  napi_env env;
  ReadProgram& program;
};

class Reader {
 public:
  Reader(napi_env e, const ReadProgram& given)
      : env(e), program(given), texts(e, given.texts) {}

  // Converts `value` as the next read says.
  void take(napi_value value) {
    const Read& read = program.reads[next++];
    switch (read.take) {
      case Take::NOTHING:
        break;
      case Take::TEXT:
        sum += textSize(value);
        break;
      case Take::NUMBER:
        add(get<double>(env, napi_get_value_double, value));
        break;
      case Take::BIGINT:
        takeBigInt(value);
        break;
      case Take::BOOLEAN:
        sum += size_t{get<bool>(env, napi_get_value_bool, value)};
        break;
      case Take::MEMBERS:
        takeMembers(value, read.count);
        break;
      case Take::ENTRIES:
        listNames(value);
        takeMembers(value, read.count);
        break;
      case Take::ELEMENTS:
        takeElements(value, read.count);
        break;
      case Take::NUMBERS:
        takeNumbers(value);
    }
  }

  size_t result() const { return sum; }

 private:
  void add(double number) {
    sum += static_cast<size_t>(static_cast<int64_t>(number));
  }

  size_t textSize(napi_value value) {
    std::array<char, 4096> text;  // longer ones are not measured
    return get<size_t>(env, napi_get_value_string_utf8, value, text.data(),
                       text.size());
  }

  void takeBigInt(napi_value value) {
    bool lossless = false;
    uint64_t word = 0;
    napi_get_value_bigint_uint64(env, value, &word, &lossless);
    sum += word;
  }

  void takeMembers(napi_value object, uint32_t count) {
    for (uint32_t i = 0; i < count; ++i) {
      take(get(env, napi_get_property, object, texts[program.reads[next].key]));
    }
  }

  void listNames(napi_value object) {
    const napi_value names = get(env, napi_get_property_names, object);
    const auto count = get<uint32_t>(env, napi_get_array_length, names);
    for (uint32_t i = 0; i < count; ++i) {
      sum += textSize(get(env, napi_get_element, names, i));
    }
  }

  void takeElements(napi_value array, uint32_t count) {
    inBatches(env, count,
              [&](uint32_t i) { take(get(env, napi_get_element, array, i)); });
  }

  void takeNumbers(napi_value array) {
    const napi_value typed = get(
        env, napi_new_instance, global(env, "Float64Array"), size_t{1}, &array);
    size_t count = 0;
    void* data = nullptr;
    napi_get_typedarray_info(env, typed, nullptr, &count, &data, nullptr,
                             nullptr);
    for (size_t i = 0; i < count; ++i) add(static_cast<double*>(data)[i]);
  }

  napi_env env;
  const ReadProgram& program;
  Texts texts;
  size_t next = 0;
  size_t sum = 0;
};

}  // namespace

ReadProgram* readsOf(napi_env env, napi_value description) {
  auto* program = new ReadProgram;
  Recorder(env, *program).record(description, 0);
  return program;
}

size_t readTree(napi_env env, const ReadProgram& program, napi_value object) {
  Reader reader(env, program);
  reader.take(object);
  return reader.result();
}

}  // namespace floor_bench
