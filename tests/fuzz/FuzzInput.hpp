// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

namespace vek::test {

/// The input that a fuzzer was called with, as text.
inline std::string_view text(std::uint8_t const* data, std::size_t size) {
  return {reinterpret_cast<char const*>(data), size};
}

/// Ends the fuzzer, which then keeps the input, unless `holds`.
inline void expect(bool holds) {
  if (!holds) std::abort();
}

}  // namespace vek::test
