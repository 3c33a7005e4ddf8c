# SPDX-License-Identifier: MIT

# vek_fuzzer(<name> [USES <room>...])
# A libFuzzer program fuzz_<name> of <name>.cpp, which begins with the inputs in corpus/<name>. It is
# part of the build with the address checks, where the rooms that it uses are compiled so that it
# sees what it reaches, and runs there as a test for a short while, always from the same seed so that
# it fails for what changed. To let it look further:
#   build/asan/bin/fuzz_<name> build/asan/corpus/<name> tests/fuzz/corpus/<name>
function(vek_fuzzer name)
  cmake_parse_arguments(arg "" "" "USES" ${ARGN})
  list(TRANSFORM arg_USES PREPEND vek_)
  if(NOT VEK_SANITIZE STREQUAL "address")
    # Not built, but known to clang-tidy.
    add_library(fuzz_${name} OBJECT EXCLUDE_FROM_ALL ${name}.cpp)
    target_link_libraries(fuzz_${name} PRIVATE vek_options ${arg_USES})
    return()
  endif()
  add_executable(fuzz_${name} ${name}.cpp)
  target_link_libraries(fuzz_${name} PRIVATE vek_options ${arg_USES})
  target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
  foreach(target IN ITEMS fuzz_${name} LISTS arg_USES)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endforeach()
  set(found ${CMAKE_BINARY_DIR}/corpus/${name})
  file(MAKE_DIRECTORY ${found})
  add_test(NAME fuzz.${name} COMMAND fuzz_${name} -seed=1 -max_total_time=5 -timeout=5 -rss_limit_mb=1024
    -print_final_stats=1 -artifact_prefix=${CMAKE_BINARY_DIR}/${name}-
    ${found} ${CMAKE_CURRENT_SOURCE_DIR}/corpus/${name})
  set_tests_properties(fuzz.${name} PROPERTIES LABELS fuzz TIMEOUT 120
    ENVIRONMENT "${VEK_TEST_ENVIRONMENT}")
endfunction()
