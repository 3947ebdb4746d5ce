// floor.node: the JavaScript side of parsing and building with nothing behind
// it, the least that any module on Node-API takes.

#include "bench/floor/spec_reader.h"
#include "bench/floor/tree_program.h"

namespace floor_bench {

namespace {

struct Arguments {
  Arguments(napi_env env, napi_callback_info info) {
    size_t count = 3;
    napi_get_cb_info(env, info, &count, given, nullptr, nullptr);
  }
  napi_value operator[](size_t index) const { return given[index]; }

 private:
  napi_value given[3] = {};
};

// prepareTree(tree, bulk) -> handle
napi_value PrepareTree(napi_env env, napi_callback_info info) {
  const Arguments arguments(env, info);
  const bool bulk = get<bool>(env, napi_get_value_bool, arguments[1]);
  return hold(env, programOf(env, arguments[0], bulk));
}

// buildTree(handle) -> a tree like the one prepared
napi_value BuildTree(napi_env env, napi_callback_info info) {
  const Arguments arguments(env, info);
  return buildTree(env, held<TreeProgram>(env, arguments[0]));
}

// prepareRead(description) -> handle
napi_value PrepareRead(napi_env env, napi_callback_info info) {
  const Arguments arguments(env, info);
  return hold(env, readsOf(env, arguments[0]));
}

// readTree(handle, object, size) -> {ok: true, value: a Buffer of that size}
napi_value ReadTree(napi_env env, napi_callback_info info) {
  const Arguments arguments(env, info);
  const auto size = get<uint32_t>(env, napi_get_value_uint32, arguments[2]);
  std::vector<char> block(size);
  const size_t sum =
      readTree(env, held<ReadProgram>(env, arguments[0]), arguments[1]);
  if (size != 0) block[0] = static_cast<char>(sum);
  return envelope(env, get(env, napi_create_buffer_copy, block.size(),
                           block.data(), nullptr));
}

}  // namespace

}  // namespace floor_bench

NAPI_MODULE_INIT() {
  using namespace floor_bench;
  const std::pair<const char*, napi_callback> functions[] = {
      {"prepareTree", PrepareTree},
      {"buildTree", BuildTree},
      {"prepareRead", PrepareRead},
      {"readTree", ReadTree}};
  for (const auto& [name, function] : functions) {
    napi_set_named_property(env, exports, name,
                            get(env, napi_create_function, name,
                                size_t{NAPI_AUTO_LENGTH}, function, nullptr));
  }
  return exports;
}
