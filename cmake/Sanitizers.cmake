# SPDX-License-Identifier: MIT
# VEK_SANITIZE=address adds address and undefined behaviour checks, VEK_SANITIZE=thread data races.

set(VEK_SANITIZE "" CACHE STRING "Sanitizers to build with: address, thread or nothing")
set_property(CACHE VEK_SANITIZE PROPERTY STRINGS "" address thread)

if(VEK_SANITIZE STREQUAL "address")
  set(flags -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  set(VEK_TEST_ENVIRONMENT UBSAN_OPTIONS=print_stacktrace=1)
elseif(VEK_SANITIZE STREQUAL "thread")
  set(flags -fsanitize=thread -fno-omit-frame-pointer)
  set(VEK_TEST_ENVIRONMENT
    TSAN_OPTIONS=second_deadlock_stack=1:suppressions=${CMAKE_SOURCE_DIR}/cmake/thread-suppressions.txt)
elseif(VEK_SANITIZE)
  message(FATAL_ERROR "VEK_SANITIZE is '${VEK_SANITIZE}', not 'address' or 'thread'")
endif()
if(VEK_SANITIZE)
  add_compile_options(${flags})
  add_link_options(${flags})
endif()
