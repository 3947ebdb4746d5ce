# Included by the builds of mutants: what does not change is compiled once.
set(CMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE PRE_TEST)

function(precompile_foreign_headers)
  get_property(targets DIRECTORY PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target ${targets})
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "EXECUTABLE")
      target_precompile_headers(${target} PRIVATE
        <algorithm> <functional> <memory> <variant> <gtest/gtest.h>)
    elseif(type STREQUAL "MODULE_LIBRARY")
      target_precompile_headers(${target} PRIVATE
        <algorithm> <memory> <variant> <napi.h>)
    elseif(type STREQUAL "STATIC_LIBRARY")
      target_precompile_headers(${target} PRIVATE
        <algorithm> <charconv> <memory> <new> <string> <variant>)
    endif()
  endforeach()
endfunction()
cmake_language(DEFER CALL precompile_foreign_headers)
