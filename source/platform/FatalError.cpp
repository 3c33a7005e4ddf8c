// SPDX-License-Identifier: MIT
#include "platform/FatalError.hpp"

#include <cstdio>
#include <cstdlib>

#include <fmt/core.h>

namespace vek {

void fatalError(std::string_view text) {
  fmt::print(stderr, "{}\n", text);
  std::fflush(nullptr);
  // Other threads are at work: what they use must not be taken down around them.
  std::_Exit(EXIT_FAILURE);
}

}  // namespace vek
