# make_node_module(<target>): turns a MODULE library into <build>/brindle.node.
#
# The headers are those of two npm packages, so that neither the installation
# of Node.js nor a download is needed. `node` itself says where they are, and
# where the list of its functions is, which only Windows asks for.
find_program(NODE_EXECUTABLE node REQUIRED)
execute_process(
  COMMAND ${NODE_EXECUTABLE} -p "
    [require('node-api-headers').def_paths.node_api_def,
      ...['node-api-headers', 'node-addon-api']
        .map((name) => path.resolve(require(name).include_dir))].join(';')"
  WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
  OUTPUT_VARIABLE node_api_includes OUTPUT_STRIP_TRAILING_WHITESPACE
  RESULT_VARIABLE node_api_result ERROR_QUIET)
if(NOT node_api_result EQUAL 0)
  message(FATAL_ERROR
    "node-api-headers or node-addon-api is missing: run 'npm ci' first")
endif()
string(REPLACE "\\" "/" node_api_includes "${node_api_includes}")
list(POP_FRONT node_api_includes node_api_functions)

# Sets `library` to an import library of the functions of node.exe.
function(make_import_library library)
  if(MSVC)
    set(path ${PROJECT_BINARY_DIR}/node_api.lib)
    set(tool ${CMAKE_AR} /nologo /def:${node_api_functions} /out:${path}
      /machine:${CMAKE_CXX_COMPILER_ARCHITECTURE_ID})
  else()
    set(path ${PROJECT_BINARY_DIR}/libnode_api.a)
    set(tool ${CMAKE_DLLTOOL} --input-def ${node_api_functions}
      --output-delaylib ${path})
  endif()
  execute_process(COMMAND ${tool} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  set(${library} ${path} PARENT_SCOPE)
endfunction()

# The host program defines the napi_* functions. Windows has to be told its
# name, which need not be node.exe: host_process.cpp finds it when the first of
# them is called.
function(link_host_program target)
  if(APPLE)
    target_link_options(${target} PRIVATE -undefined dynamic_lookup)
  elseif(WIN32)
    make_import_library(library)
    target_compile_definitions(${target} PRIVATE BUILDING_NODE_EXTENSION)
    target_sources(${target} PRIVATE
      ${PROJECT_SOURCE_DIR}/binding/host_process.cpp)
    target_link_libraries(${target} PRIVATE ${library} delayimp)
    target_link_options(${target} PRIVATE
      $<IF:$<BOOL:${MSVC}>,/DELAYLOAD:NODE.EXE,-static>)
  endif()
endfunction()

# Leaves out what the module does not use, and exports its two functions only:
# hidden visibility does not cover templates of the standard library.
function(trim_module target)
  set(exports ${PROJECT_SOURCE_DIR}/binding/exports.map)
  if(APPLE)
    target_link_options(${target} PRIVATE -Wl,-dead_strip)
  elseif(UNIX)
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${exports})
    target_link_options(${target} PRIVATE
      -Wl,--version-script=${exports} -Wl,--gc-sections
      -Wl,-z,relro,-z,now,-z,noexecstack
      $<$<CONFIG:Release>:-s>)
  elseif(MINGW)
    target_link_options(${target} PRIVATE
      -Wl,--gc-sections $<$<CONFIG:Release>:-s>)
  endif()
endfunction()

function(make_node_module target)
  set_target_properties(${target} PROPERTIES
    PREFIX "" OUTPUT_NAME brindle SUFFIX .node
    # An expression, or else some generators add a folder for the configuration.
    LIBRARY_OUTPUT_DIRECTORY $<1:${PROJECT_BINARY_DIR}>)
  target_include_directories(${target} SYSTEM PRIVATE ${node_api_includes})
  # The compiler keeps exceptions: ours must reach the guard. Only those that
  # node-addon-api would throw for a JavaScript error are turned off.
  target_compile_definitions(${target} PRIVATE
    NAPI_VERSION=8
    NODE_ADDON_API_DISABLE_CPP_EXCEPTIONS
    NODE_ADDON_API_DISABLE_DEPRECATED
    NODE_API_SWALLOW_UNTHROWABLE_EXCEPTIONS)
  link_host_program(${target})
  trim_module(${target})
endfunction()
