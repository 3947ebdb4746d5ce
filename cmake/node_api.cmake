# make_node_module(<target>): turns a MODULE library into <build>/brindle.node.
#
# The headers are those of two npm packages, so that neither the installation
# of Node.js nor a download is needed. `node` itself says where they are.
find_program(NODE_EXECUTABLE node REQUIRED)
execute_process(
  COMMAND ${NODE_EXECUTABLE} -p "
    ['node-api-headers', 'node-addon-api']
      .map((name) => path.resolve(require(name).include_dir)).join(';')"
  WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
  OUTPUT_VARIABLE node_api_includes OUTPUT_STRIP_TRAILING_WHITESPACE
  RESULT_VARIABLE node_api_result ERROR_QUIET)
if(NOT node_api_result EQUAL 0)
  message(FATAL_ERROR
    "node-api-headers or node-addon-api is missing: run 'npm ci' first")
endif()

function(make_node_module target)
  set_target_properties(${target} PROPERTIES
    PREFIX "" OUTPUT_NAME brindle SUFFIX .node
    LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR})
  target_include_directories(${target} SYSTEM PRIVATE ${node_api_includes})
  # The compiler keeps exceptions: ours must reach the guard. Only those that
  # node-addon-api would throw for a JavaScript error are turned off.
  target_compile_definitions(${target} PRIVATE
    NAPI_VERSION=8
    NODE_ADDON_API_DISABLE_CPP_EXCEPTIONS
    NODE_ADDON_API_DISABLE_DEPRECATED
    NODE_API_SWALLOW_UNTHROWABLE_EXCEPTIONS)

  if(APPLE)
    # The host program defines the napi_* functions.
    target_link_options(${target} PRIVATE -undefined dynamic_lookup
                                          -Wl,-dead_strip)
  elseif(UNIX)
    # Hidden visibility does not cover templates of the standard library.
    set(exports ${PROJECT_SOURCE_DIR}/binding/exports.map)
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${exports})
    target_link_options(${target} PRIVATE
      -Wl,--version-script=${exports} -Wl,--gc-sections
      -Wl,-z,relro,-z,now,-z,noexecstack
      $<$<CONFIG:Release>:-s>)
  endif()
endfunction()
