// SPDX-License-Identifier: MIT
#pragma once

#include <fmt/format.h>

#include <string>

namespace vek {

/// Prints a figure beside its bound. Whether it keeps to it.
inline bool holds(std::string const& what, double value, double bound) {
  fmt::print("{:<52} {:8.3f}   at most {:.3f}{}\n", what, value, bound,
             value <= bound ? "" : "   MISSED");
  return value <= bound;
}

}  // namespace vek
