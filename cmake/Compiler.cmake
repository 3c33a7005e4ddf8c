# SPDX-License-Identifier: MIT
# The language, the warnings and the compilers that may build this.

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  message(FATAL_ERROR
    "g++ ${CMAKE_CXX_COMPILER_VERSION} miscompiles ordinary coroutine code (temporaries that live "
    "across co_await are destroyed twice). Use clang 19: cmake --preset release")
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 17)
  message(FATAL_ERROR "clang ${CMAKE_CXX_COMPILER_VERSION} is too old for this code; use clang 19")
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  # Paths count from here, so that another clone of the project finds what this one compiled.
  set(CMAKE_CXX_COMPILER_LAUNCHER
    ${CMAKE_COMMAND} -E env
    CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1
    CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
    ${CCACHE_PROGRAM})
endif()

add_library(vek_options INTERFACE)
target_compile_options(vek_options INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wnon-virtual-dtor -Wold-style-cast
  -Woverloaded-virtual -Wconversion -Wsign-conversion -Wimplicit-fallthrough -Wunused)
# A precompiled header with a time stamp would miss the cache each time.
target_compile_options(vek_options INTERFACE "SHELL:-Xclang -fno-pch-timestamp")
target_include_directories(vek_options INTERFACE ${CMAKE_SOURCE_DIR}/source)
target_link_options(vek_options INTERFACE -fuse-ld=lld)
