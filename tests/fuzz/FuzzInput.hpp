// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <source_location>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

namespace vek::test {

/// The input that a fuzzer was called with, as text.
inline std::string_view text(std::uint8_t const* data, std::size_t size) {
  return {reinterpret_cast<char const*>(data), size};
}

/// Ends the fuzzer, which then keeps the input, unless `holds`.
inline void expect(bool holds, std::source_location where = std::source_location::current()) {
  if (holds) return;
  std::cerr << where.file_name() << ':' << where.line() << ": not as expected\n";
  std::abort();
}

}  // namespace vek::test
