# SPDX-License-Identifier: MIT

# vek_room(<name> [USES <room>...] [LIBRARIES <library>...] [PRIVATE <library>...])
# A room is the static library of all sources of the current folder. It sees the rooms that it
# names and no other.
function(vek_room name)
  cmake_parse_arguments(arg "" "" "USES;LIBRARIES;PRIVATE" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp)
  list(TRANSFORM arg_USES PREPEND vek_)
  if(NOT sources)
    add_library(vek_${name} INTERFACE)
    target_link_libraries(vek_${name} INTERFACE vek_options ${arg_USES} ${arg_LIBRARIES})
    return()
  endif()
  add_library(vek_${name} STATIC ${sources})
  target_link_libraries(vek_${name} PUBLIC vek_options ${arg_USES} ${arg_LIBRARIES} PRIVATE ${arg_PRIVATE})
endfunction()

# vek_test(<name> [USES <room>...] [LIBRARIES <library>...] [LABELS <label>...])
# One test program of all sources of the current folder. What its labels mean to scripts/test:
#   threads   also runs with the data race checks
#   program   runs the whole program, in release too
#   window    runs the desktop program on a desktop, or a browser: in release only, and alone
function(vek_test name)
  cmake_parse_arguments(arg "" "" "USES;LIBRARIES;LABELS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(test_${name} ${sources})
  list(TRANSFORM arg_USES PREPEND vek_)
  target_link_libraries(test_${name} PRIVATE vek_options ${arg_USES} ${arg_LIBRARIES} GTest::gmock GTest::gtest_main)
  target_include_directories(test_${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  if(CMAKE_DISABLE_PRECOMPILE_HEADERS)
    target_compile_options(test_${name} PRIVATE "SHELL:-include gmock/gmock.h")
  else()
    target_precompile_headers(test_${name} PRIVATE <gmock/gmock.h> <gtest/gtest.h>)
  endif()
  if(threads IN_LIST arg_LABELS)
    add_dependencies(threads test_${name})
  endif()
  set(isAlone FALSE)
  if(window IN_LIST arg_LABELS)
    set(isAlone TRUE)
  endif()
  # Joined to one, since a list does not survive the discovery.
  list(JOIN arg_LABELS "," labels)
  gtest_discover_tests(test_${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT 300 LABELS "${name},${labels}" RUN_SERIAL ${isAlone}
    ENVIRONMENT "${VEK_TEST_ENVIRONMENT}")
endfunction()
